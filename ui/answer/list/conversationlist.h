#pragma once

#include "ui/text/reader/readgroup.h"

#include <QListWidget>
#include <QTimer>

#include <vector>

class ConversationItem;
class EntryDelegate;

/// The list of the conversation: every entry is an item drawn by its item widget. It scrolls by the
/// pixel, shows no horizontal scroll bar and a thin vertical one.
///
/// A conversation only grows, and may grow for weeks. The stock list lays out and moves every item
/// with each new one; this one keeps a table of its own of where items begin, and all item widgets
/// on one sheet that moves as a whole, so that an entry costs the same however many are there. The
/// sheet has sections of some entries each: Qt goes through all children of a widget when
/// it paints one of them. No widget can measure more than QWIDGETSIZE_MAX, so the sheet shows only
/// a part of a conversation of millions of px, around what is seen; what lies outside of that is
/// cut off.
class ConversationList : public QListWidget, public ReadGroup
{
public:
    explicit ConversationList(QWidget *parent);

    /// The parent for the next entry.
    [[nodiscard]] QWidget *nextParent();

    /// Appends \a entry, which is whole, as the item widget of a new item and shows it; the list
    /// owns both. It follows when the entry takes another height. An entry that is not built under
    /// nextParent() is moved there, which costs time and memory.
    void append(ConversationItem *entry);

    /// Scrolls as far as needed to show \a widget, which lies inside an item widget.
    void reveal(const QWidget *widget);

    /// Whether item \a row is seen or less than two pages away from what is: entries further off
    /// may sleep.
    [[nodiscard]] bool isNear(int row) const;

    // A screen reader reads the entries themselves; the stock list tells it of their names alone.
    [[nodiscard]] QAccessible::Role readRole() const override { return QAccessible::List; }
    [[nodiscard]] QString readName() const override { return accessibleName(); }
    [[nodiscard]] int partCount() override { return count(); }
    [[nodiscard]] QWidget *part(int number) override;

    QRect visualRect(const QModelIndex &index) const override;
    QModelIndex indexAt(const QPoint &point) const override;
    void scrollTo(const QModelIndex &index, ScrollHint hint = EnsureVisible) override;
    void doItemsLayout() override;

protected:
    void rowsInserted(const QModelIndex &parent, int start, int end) override;
    void dataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                     const QVector<int> &roles) override;
    void updateGeometries() override;
    void updateEditorGeometries() override;
    void scrollContentsBy(int dx, int dy) override;
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    [[nodiscard]] int verticalOffset() const override;
    [[nodiscard]] int horizontalOffset() const override;
    bool focusNextPrevChild(bool next) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    void setSelection(const QRect &rect, QItemSelectionModel::SelectionFlags command) override;
    [[nodiscard]] QRegion visualRegionForSelection(const QItemSelection &selection) const override;

private:
    /// Where every item from \a first on begins, and its widget with it.
    void layOutFrom(int first);

    /// Puts the widgets of the items from \a first on where the items begin.
    void placeFrom(int first);
    void placeSection(int section, int first);

    /// Puts the sheet where the view is.
    void placeSheet();

    /// How far item \a row, or the end, and \a widget in an entry begin below the first item, px.
    [[nodiscard]] int topOf(int row) const { return m_tops[static_cast<std::size_t>(row)]; }
    [[nodiscard]] int topIn(const QWidget *widget) const;
    [[nodiscard]] int contentHeight() const { return m_tops.back(); }

    [[nodiscard]] int rowAt(int y) const;
    [[nodiscard]] ConversationItem *entry(int row) const;

    /// Wakes what is seen; what is near follows while no event waits, and what is not sleeps.
    void wakeNear();
    void sleepFar();

    /// These wake item \a row, or the nearest to the view; false when it, or all near, is awake.
    bool wake(int row);
    bool wakeOne();

    EntryDelegate *m_delegate;
    QWidget *m_sheet;
    int m_sheetTop = 0;                ///< how far the sheet begins below the first item, px
    std::vector<QWidget *> m_sections; ///< children of the sheet
    std::vector<int> m_tops{0};        ///< top of each item in px, and the end of the last
    int m_firstNear = 0;
    int m_lastNear = -1;
    std::vector<int> m_leaving; ///< rows that may have to be sent to sleep
    QTimer m_sleepTimer;
    QTimer m_wakeTimer;
};
