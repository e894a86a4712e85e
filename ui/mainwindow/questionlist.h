#pragma once

#include "ui/text/reader/readgroup.h"

#include <QListWidget>

class QPushButton;

/// A list whose rows are questions to click on: each row's widget holds one button. A screen reader
/// finds the buttons of the rows that have a question, in the place of Qt's own cells, which it
/// could not press.
class QuestionList : public QListWidget, public ReadGroup
{
    Q_OBJECT
    Q_DISABLE_COPY(QuestionList)

public:
    explicit QuestionList(QWidget *parent);

    /// The button in \a row, or null: a row may have none.
    [[nodiscard]] QPushButton *rowButton(int row) const;

    [[nodiscard]] QAccessible::Role readRole() const override { return QAccessible::List; }
    [[nodiscard]] QString readName() const override { return accessibleName(); }
    [[nodiscard]] int partCount() override { return questions().size(); }
    [[nodiscard]] QWidget *part(int number) override;

private:
    [[nodiscard]] QVector<QPushButton *> questions() const;
};
