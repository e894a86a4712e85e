#include "ui/answer/bubblelabel.h"

#include "ui/answer/answergeometry.h"

#include <QLabel>

QLabel *makeBubbleLabel(const QString &styleSheet, QWidget *parent)
{
    auto *label = new QLabel(parent);
    label->setStyleSheet(styleSheet);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::LinksAccessibleByMouse
                                   | Qt::LinksAccessibleByKeyboard);
    label->setContextMenuPolicy(Qt::CustomContextMenu);
    return label;
}

void wrapBubbleLabel(QLabel *label)
{
    label->setFixedWidth(textMaxWidth);
    label->setWordWrap(true);
    label->adjustSize();
}
