#pragma once

#include "ui/answer/conversationitem.h"

/// What the user asked, in a blue bubble at the right.
class QuestionBubble : public ConversationItem
{
    Q_OBJECT
    Q_DISABLE_COPY(QuestionBubble)

public:
    /// A bubble for \a text, shown as typed: it is never read as rich text.
    QuestionBubble(const QString &text, ConversationList *list);

    [[nodiscard]] QLabel *label() const { return m_label; }

private:
    QWidget *m_bubble;
    QLabel *m_label;
};
