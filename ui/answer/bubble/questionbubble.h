#pragma once

#include "ui/answer/list/conversationitem.h"

/// What the user asked, in a blue bubble at the right.
class QuestionBubble : public ConversationItem
{
    Q_OBJECT
    Q_DISABLE_COPY(QuestionBubble)

public:
    /// A bubble for \a text, shown as typed: it is never read as rich text.
    QuestionBubble(const QString &text, ConversationList *list);

    /// The text; null while the entry sleeps.
    [[nodiscard]] QLabel *label() const { return m_label; }

    [[nodiscard]] QLabel *text(int number) const override;

protected:
    [[nodiscard]] bool canSleep() const override { return true; }
    void forget() override { m_label = nullptr; }
    void rebuild() override { build(); }

private:
    void build();

    QString m_text;
    QLabel *m_label = nullptr;
};
