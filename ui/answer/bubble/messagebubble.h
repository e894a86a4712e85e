#pragma once

#include "ui/answer/list/conversationitem.h"

/// A plain message of the assistant, bold in a grey bubble at the left.
class MessageBubble : public ConversationItem
{
    Q_OBJECT
    Q_DISABLE_COPY(MessageBubble)

public:
    MessageBubble(const QString &text, ConversationList *list);

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
