#pragma once

class MarkupBudget;
class QLabel;
class QString;
class QWidget;

/// Width in px of every text of a bubble.
inline constexpr int textMaxWidth = 446;

/// A label for a text of the conversation, in \a parent and the style \a styleSheet: its text can
/// be selected with the mouse, its links used with mouse and keyboard.
[[nodiscard]] QLabel *makeBubbleLabel(const QString &styleSheet, QWidget *parent);

/// Gives \a label its \a text, which reads nothing from elsewhere, and the size that takes. Markup
/// that costs too much to lay out is left away.
void setBubbleText(QLabel *label, const QString &text);

/// Fixes \a label to the width of bubble texts, breaks the lines of \a text between words and gives
/// the label the height that takes.
void setWrappedText(QLabel *label, const QString &text);

/// The same for one of several texts, whose markup may cost no more than \a budget together.
void setWrappedText(QLabel *label, const QString &text, MarkupBudget &budget);
