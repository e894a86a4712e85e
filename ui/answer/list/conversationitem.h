#pragma once

#include <QWidget>

class QLabel;
class QListWidgetItem;
class ConversationList;

/// One entry of the conversation: the item widget with the speaker's icon, the triangle that points
/// from the bubble to it, each at its fixed place. The kinds of entry add their bubbles.
///
/// A conversation has thousands of entries, of which a handful is seen. One far from those may
/// sleep: the widgets in it are deleted and made again, the same, before it is seen. Its place and
/// its number stay.
class ConversationItem : public QWidget
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

    /// A hidden item of no size yet, appended to \a list, which owns it from now on. Show it when
    /// everything in it has its place.
    ConversationItem(Speaker speaker, ConversationList *list);

    /// The label of text number \a number of the entry; null while it sleeps.
    [[nodiscard]] virtual QLabel *text(int number) const;

    [[nodiscard]] bool isAwake() const { return m_awake; }

    /// Makes the widgets in the entry again if it sleeps.
    void wake();

    /// Deletes the widgets in the entry, unless it is being built, cannot be built again, or is in
    /// use: with text selected in it, the focus or the mouse. Returns whether it sleeps.
    bool sleep();

signals:
    /// The copy menu of text number \a number is wanted.
    void copyMenuRequested(int number);

protected:
    /// Gives the item \a size px, in the list too.
    void setItemSize(const QSize &size);

    /// A bubble in the style of the speaker, of no size yet.
    [[nodiscard]] QWidget *addBubble();

    /// Lets a screen reader say \a text for the entry, asleep or not.
    void readAs(const QString &text);

    /// Makes \a label text number \a number of the entry.
    void addText(QLabel *label, int number);

    /// Whether rebuild() would make what is in the entry now.
    [[nodiscard]] virtual bool canSleep() const { return false; }

    /// Forgets the widgets that are about to be deleted.
    virtual void forget() { }

    /// Makes the bubbles again, as they were.
    virtual void rebuild() { }

private:
    void addSpeaker();
    [[nodiscard]] bool isInUse() const;

    Speaker m_speaker;
    bool m_awake = true;     ///< before the next, as the list asks for it
    QListWidgetItem *m_item; ///< owned by the list, as this is
};
