#pragma once

#include <QAbstractItemDelegate>

/// Makes a widget that exists already the item widget of an item, as its persistent editor.
/// QListWidget::setItemWidget() would give the widget another parent. Paints nothing itself.
class EntryDelegate : public QAbstractItemDelegate
{
public:
    using QAbstractItemDelegate::QAbstractItemDelegate;

    /// Lets \a widget be the editor of the item whose editor is opened next.
    void setNext(QWidget *widget) { m_next = widget; }

    QWidget *createEditor(QWidget *, const QStyleOptionViewItem &,
                          const QModelIndex &) const override
    {
        return m_next;
    }
    void paint(QPainter *, const QStyleOptionViewItem &, const QModelIndex &) const override { }
    QSize sizeHint(const QStyleOptionViewItem &, const QModelIndex &index) const override
    {
        return index.data(Qt::SizeHintRole).toSize();
    }

private:
    QWidget *m_next = nullptr;
};
