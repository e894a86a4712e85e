#pragma once

#include "ui/answer/list/conversationitem.h"
#include "ui/answer/list/conversationlist.h"

#include <QRect>
#include <QScrollBar>
#include <QString>

#include <memory>

/// An entry of any height. Counts how often it got another parent.
class Entry : public ConversationItem
{
public:
    Entry(int entryHeight, QWidget *parent)
        : ConversationItem(Speaker::User, parent)
    {
        setItemHeight(entryHeight);
    }

    using ConversationItem::setItemHeight;

    int parentChanges = 0;

protected:
    bool event(QEvent *event) override
    {
        parentChanges += event->type() == QEvent::ParentChange ? 1 : 0;
        return ConversationItem::event(event);
    }

    int readCount() const override { return 0; }
    QWidget *readPart(int) const override { return nullptr; }
};

/// A list of 648 x 400 px in a window of its own.
class ListTest : public QObject
{
    Q_OBJECT

protected slots:
    void init();
    void cleanup();

protected:
    static constexpr int width = 648;
    static constexpr int height = 400;

    Entry *append(int itemHeight);
    [[nodiscard]] QRect placeOf(const QWidget *widget) const;

    /// What is wrong with the place of an entry that should stand at the top of the view; empty
    /// when nothing is.
    [[nodiscard]] QString mistakeAt(int row) const;
    [[nodiscard]] QScrollBar *bar() const { return m_list->verticalScrollBar(); }

    std::unique_ptr<QWidget> m_window;
    ConversationList *m_list = nullptr;
};
