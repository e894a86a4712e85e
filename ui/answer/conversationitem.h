#pragma once

#include <QWidget>

class QLabel;
class QListWidgetItem;
class ConversationList;

/// One entry of the conversation: the item widget with the speaker's icon, the triangle that points
/// from the bubble to it, each at its fixed place. The kinds of entry add their bubbles.
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

    /// An item of no height yet, made on the sheet of \a list so that its texts are measured
    /// in their final style. It joins the list with appendTo().
    ConversationItem(Speaker speaker, ConversationList *list);

    /// Gives the item \a size px, in the list too once it is there.
    void setItemSize(const QSize &size);

    /// Appends the item to its list, which takes ownership.
    void appendToList();

protected:
    /// A bubble in the style of the speaker, of no size yet.
    [[nodiscard]] QWidget *addBubble();

private:
    Speaker m_speaker;
    ConversationList *m_list;
    QListWidgetItem *m_item = nullptr;
};
