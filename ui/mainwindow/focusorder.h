#pragma once

#include <QVector>

class QWidget;

/// The control that the Tab key reaches after \a current, or before it when not \a forward: the
/// controls of the first of \a areas come first, those of one area in reading order, and after the
/// last comes the first. Null when there is none.
[[nodiscard]] QWidget *neighbourInReadingOrder(const QVector<QWidget *> &areas,
                                               const QWidget *current, bool forward);
