#pragma once

class QLabel;
class QString;
class QWidget;

/// A label for a text of the conversation, in \a parent and the style \a styleSheet: its text can
/// be selected with the mouse, its links used with mouse and keyboard.
[[nodiscard]] QLabel *makeBubbleLabel(const QString &styleSheet, QWidget *parent);

/// Fixes \a label to the width of bubble texts, breaks its lines between words and gives it the
/// height that takes.
void wrapBubbleLabel(QLabel *label);
