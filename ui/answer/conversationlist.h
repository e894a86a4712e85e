#pragma once

#include <QListWidget>

/// The list of the conversation: every exchange is an item drawn by its item widget. It scrolls by
/// the pixel, shows no horizontal scroll bar and a thin vertical one.
class ConversationList : public QListWidget
{
public:
    explicit ConversationList(QWidget *parent);

    /// Appends \a widget as a new item of its size; the list owns both.
    QListWidgetItem *append(QWidget *widget);
};
