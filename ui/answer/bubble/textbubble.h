#pragma once

#include "ui/answer/list/conversationitem.h"

/// An entry with one text, in a bubble as large as the text. Its kinds say how the text looks and
/// where the bubble lies.
class TextBubble : public ConversationItem
{
    Q_OBJECT
    Q_DISABLE_COPY(TextBubble)

public:
    /// The text; null while the entry sleeps.
    [[nodiscard]] QLabel *label() const { return m_label; }

    [[nodiscard]] QLabel *text(int number) const override;

protected:
    /// An empty entry for \a text; the constructor of the kind calls build().
    TextBubble(Speaker speaker, const QString &text, QWidget *parent);

    /// Makes the bubble and what is in it.
    void build();

    [[nodiscard]] bool canSleep() const override { return true; }
    void forget() override { m_label = nullptr; }
    void rebuild() override { build(); }
    [[nodiscard]] int readCount() const override { return 1; }
    [[nodiscard]] QWidget *readPart(int number) const override;

private:
    /// A label with \a text at its place in \a bubble.
    [[nodiscard]] virtual QLabel *makeLabel(const QString &text, QWidget *bubble) const = 0;

    /// The corner in px of the bubble of a text that is \a textWidth px wide.
    [[nodiscard]] virtual QPoint bubblePlace(int textWidth) const = 0;

    QString m_text;
    QLabel *m_label = nullptr;
};
