#pragma once

#include <QListWidget>

#include <vector>

/// The list of the conversation: every entry is an item drawn by its item widget. It scrolls by the
/// pixel, shows no horizontal scroll bar and a thin vertical one.
///
/// A conversation only grows, and may grow for weeks. The stock list lays out and moves every item
/// with each new one; this one keeps a table of its own of where items begin, and all item widgets
/// on one sheet that moves as a whole, so that an entry costs the same however many are there.
class ConversationList : public QListWidget
{
public:
    explicit ConversationList(QWidget *parent);

    /// The parent for new item widgets.
    [[nodiscard]] QWidget *sheet() const { return m_sheet; }

    /// Appends \a widget, a child of sheet(), as a new item of its size; the list owns both.
    QListWidgetItem *append(QWidget *widget);

    /// Scrolls as far as needed to show \a widget, which lies inside an item widget.
    void reveal(const QWidget *widget);

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
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    void setSelection(const QRect &rect, QItemSelectionModel::SelectionFlags command) override;
    [[nodiscard]] QRegion visualRegionForSelection(const QItemSelection &selection) const override;

private:
    /// Where every item from \a first on begins, and its widget with it.
    void layOutFrom(int first);
    [[nodiscard]] int contentHeight() const { return m_tops.back(); }

    QWidget *m_sheet;
    std::vector<int> m_tops{0}; ///< top of each item in px, and the end of the last
};
