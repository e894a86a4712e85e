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

void setWrappedText(QLabel *label, const QString &text)
{
    // The text comes last, or a long one would be laid out several times.
    label->ensurePolished();
    label->setFixedWidth(textMaxWidth);
    label->setWordWrap(true);
    label->setText(text);
    label->adjustSize();
}
