#pragma once

#include "ui/answer/bubble/textbubble.h"

/// A plain message of the assistant, bold in a grey bubble at the left.
class MessageBubble final : public TextBubble
{
    Q_OBJECT
    Q_DISABLE_COPY(MessageBubble)

public:
    MessageBubble(const QString &text, QWidget *parent);

private:
    /// Lines that are too wide are broken between words.
    [[nodiscard]] QLabel *makeLabel(const QString &text, QWidget *bubble) const override;

    [[nodiscard]] QPoint bubblePlace(int textWidth) const override;
};
