#include "ui/mainwindow/questionlist.h"

#include <QPushButton>

QuestionList::QuestionList(QWidget *parent)
    : QListWidget(parent)
{
    forgetEarlyInterface(this);
}

QPushButton *QuestionList::rowButton(int row) const
{
    const QWidget *widget = itemWidget(item(row));
    return widget == nullptr ? nullptr : widget->findChild<QPushButton *>();
}

QWidget *QuestionList::part(int number)
{
    return questions().value(number);
}

QVector<QPushButton *> QuestionList::questions() const
{
    QVector<QPushButton *> found;
    for (int row = 0; row < count(); ++row) {
        QPushButton *button = rowButton(row);
        if (button != nullptr && !button->accessibleName().isEmpty()) {
            found.append(button);
        }
    }
    return found;
}
