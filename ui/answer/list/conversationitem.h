#pragma once

#include "ui/text/reader/readgroup.h"

#include <QWidget>

class QLabel;
class QListWidgetItem;

/// One entry of the conversation: the item widget with the speaker's icon, the triangle that points
/// from the bubble to it, each at its fixed place. The kinds of entry add their bubbles.
///
/// A conversation has thousands of entries, of which a handful is seen. One far from those may
/// sleep: the widgets in it are deleted and made again, the same, before it is seen. Its place and
/// its number stay.
class ConversationItem : public QWidget, public ReadGroup
{
    Q_OBJECT
    Q_DISABLE_COPY(ConversationItem)

public:
    /// Who speaks, and with it the column that icon and triangle stand in.
    enum class Speaker {
        User,
        AssistantMessage,
        AssistantAnswer,
    };

    /// Width of every entry in px.
    static constexpr int itemWidth = 648;

    /// A hidden entry of no height yet, for ConversationList::append(). Build it under \a parent,
    /// which the list names, and leave it there: what is in a widget is styled anew, and takes more
    /// memory, each time the widget gets another parent.
    ConversationItem(Speaker speaker, QWidget *parent);

    /// Makes this the entry of \a item of a list, which takes its accessible name and its height
    /// from it, now and whenever the height changes.
    void joinListAs(QListWidgetItem *item);

    /// The label of text number \a number of the entry; null while it sleeps.
    [[nodiscard]] virtual QLabel *text(int number) const;

    [[nodiscard]] bool isAwake() const { return m_awake; }

    /// Makes the widgets in the entry again if it sleeps.
    void wake();

    /// Deletes the widgets in the entry, unless it cannot be built again or is in use: with text
    /// selected in it, the focus or the mouse. Returns whether it sleeps.
    bool sleep();

    [[nodiscard]] QAccessible::Role readRole() const override { return QAccessible::ListItem; }

    /// Who speaks, and what.
    [[nodiscard]] QString readName() const override;

    /// Wakes the entry.
    [[nodiscard]] int partCount() final;
    [[nodiscard]] QWidget *part(int number) final;

signals:
    /// A screen reader looked into the entry while it slept.
    void wokenByReader();

    /// The copy menu of text number \a number is wanted.
    void copyMenuRequested(int number);

protected:
    /// Gives the entry \a height px, in the list too, and the width of all entries.
    void setItemHeight(int height);

    /// A bubble in the style of the speaker, of no size yet.
    [[nodiscard]] QWidget *addBubble();

    /// Makes \a label text number \a number of the entry.
    void addText(QLabel *label, int number);

    /// Whether rebuild() would make what is in the entry now.
    [[nodiscard]] virtual bool canSleep() const { return false; }

    /// What is read in the entry, in order, while it is awake.
    [[nodiscard]] virtual int readCount() const = 0;
    [[nodiscard]] virtual QWidget *readPart(int number) const = 0;

    /// Forgets the widgets that are about to be deleted.
    virtual void forget() { }

    /// Makes the bubbles again, as they were.
    virtual void rebuild() { }

private:
    void addSpeaker();
    [[nodiscard]] bool isInUse() const;

    Speaker m_speaker;
    bool m_awake = true;
    QListWidgetItem *m_item = nullptr; ///< once it is in the list, which owns it
};
