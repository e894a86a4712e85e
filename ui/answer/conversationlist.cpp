#include "ui/answer/conversationlist.h"

#include "ui/style/styles.h"

#include <QScrollBar>

#include <memory>

ConversationList::ConversationList(QWidget *parent)
    : QListWidget(parent)
{
    setContentsMargins(0, 0, 0, 0);
    setStyleSheet(QStringLiteral("QListWidget{background-color:white;}"));
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    verticalScrollBar()->setStyleSheet(styles::thinScrollBar());
}

QListWidgetItem *ConversationList::append(QWidget *widget)
{
    auto item = std::make_unique<QListWidgetItem>();
    // Known before the item joins the list, so that the list is laid out once.
    item->setSizeHint(widget->size());
    addItem(item.get());
    setItemWidget(item.get(), widget);
    return item.release(); // owned by the list since addItem()
}
