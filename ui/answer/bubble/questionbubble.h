#pragma once

#include "ui/answer/bubble/textbubble.h"

/// What the user asked, in a blue bubble at the right.
class QuestionBubble final : public TextBubble
{
    Q_OBJECT
    Q_DISABLE_COPY(QuestionBubble)

public:
    /// A bubble for \a text, shown as typed: it is never read as rich text.
    QuestionBubble(const QString &text, QWidget *parent);

private:
    /// Lines that are too wide are broken between characters.
    [[nodiscard]] QLabel *makeLabel(const QString &text, QWidget *bubble) const override;

    /// Its right edge is always at the triangle.
    [[nodiscard]] QPoint bubblePlace(int textWidth) const override;
};
