#pragma once

#include "ui/answer/conversationitem.h"

/// A plain message of the assistant, bold in a grey bubble at the left.
class MessageBubble : public ConversationItem
{
    Q_OBJECT
    Q_DISABLE_COPY(MessageBubble)

public:
    MessageBubble(const QString &text, ConversationList *list);

    [[nodiscard]] QLabel *label() const { return m_label; }

private:
    QWidget *m_bubble;
    QLabel *m_label;
};
