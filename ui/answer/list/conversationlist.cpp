#include "ui/answer/list/conversationlist.h"

#include "ui/answer/list/conversationitem.h"
#include "ui/answer/list/entrydelegate.h"
#include "ui/style/styles.h"

#include <QCoreApplication>
#include <QResizeEvent>
#include <QScrollBar>

#include <algorithm>
#include <limits>
#include <memory>

namespace {

constexpr int wheelStep = 20; ///< px of a line; the wheel moves three at a notch
constexpr int sectionRows = 50;
constexpr int pagesAround = 2; ///< heights of the view, above and below it, that are kept ready

/// px of the conversation that the sheet shows at most, well below what a widget can measure.
constexpr int sheetHeight = 4'000'000;

/// px of the conversation that can be scrolled to: what a scroll bar counts, and some room.
constexpr int mostContent = std::numeric_limits<int>::max() - 2 * sheetHeight;

} // namespace

ConversationList::ConversationList(QWidget *parent)
    : QListWidget(parent)
    , m_delegate(new EntryDelegate(this))
    , m_sheet(new QWidget(viewport()))
{
    setItemDelegate(m_delegate);
    setContentsMargins(0, 0, 0, 0);
    setAccessibleName(QCoreApplication::translate("QARegion", "对话"));
    setStyleSheet(QStringLiteral("QListWidget{background-color:white;}"));
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setSelectionMode(QAbstractItemView::NoSelection);
    setAutoScroll(false); // or a click beside a tall entry would show its end
    verticalScrollBar()->setStyleSheet(styles::thinScrollBar());
    verticalScrollBar()->setSingleStep(wheelStep);
    // Nothing is sent to sleep at once: the mouse or key event that scrolls may be its own.
    m_sleepTimer.setSingleShot(true);
    m_sleepTimer.setInterval(0);
    connect(&m_sleepTimer, &QTimer::timeout, this, &ConversationList::sleepFar);
    m_wakeTimer.setInterval(0);
    connect(&m_wakeTimer, &QTimer::timeout, this, [this] {
        if (!wakeOne()) {
            m_wakeTimer.stop();
        }
    });
}

QWidget *ConversationList::nextParent()
{
    if (static_cast<std::size_t>(count() / sectionRows) == m_sections.size()) {
        m_sections.push_back(new QWidget(m_sheet));
        m_sections.back()->show();
    }
    return m_sections.back();
}

void ConversationList::append(ConversationItem *entry)
{
    entry->setParent(nextParent()); // does nothing but when it has another
    auto made = std::make_unique<QListWidgetItem>();
    entry->joinListAs(made.get());
    addItem(made.get());
    QListWidgetItem *item = made.release(); // owned by the list since addItem()
    m_delegate->setNext(entry);
    openPersistentEditor(item); // which shows it
    layOutFrom(count() - 1);
    connect(entry, &ConversationItem::wokenByReader, this,
            [this, row = count() - 1] { m_leaving.push_back(row); });
    m_leaving.push_back(count() - 1); // nobody may ever scroll to it
    m_sleepTimer.start();
}

void ConversationList::layOutFrom(int first)
{
    m_tops.resize(static_cast<std::size_t>(count()) + 1);
    for (int row = first; row < count(); ++row) {
        const auto at = static_cast<std::size_t>(row);
        const int height = std::min(item(row)->sizeHint().height(), mostContent - m_tops[at]);
        m_tops[at + 1] = m_tops[at] + height;
    }
    placeFrom(first);
    updateGeometries();
    wakeNear();
}

void ConversationList::placeFrom(int first)
{
    for (int section = first / sectionRows; section * sectionRows < count(); ++section) {
        placeSection(section, first);
    }
    const int height = std::min(contentHeight() - m_sheetTop, sheetHeight);
    m_sheet->resize(viewport()->width(), std::max(height, viewport()->height()));
}

void ConversationList::placeSection(int section, int first)
{
    QWidget *const widget = m_sections[static_cast<std::size_t>(section)];
    const int begin = section * sectionRows;
    const int end = std::min(begin + sectionRows, count());
    const int top = std::max(topOf(begin), m_sheetTop);
    const int bottom = std::min(topOf(end), m_sheetTop + sheetHeight);
    if (bottom <= top) {
        widget->setGeometry(0, -1, viewport()->width(), 0); // not hidden: the Tab key gets there
        return;
    }
    for (int row = widget->height() == 0 ? begin : std::max(begin, first); row < end; ++row) {
        if (QWidget *entryWidget = itemWidget(item(row))) {
            entryWidget->move(0, topOf(row) - top);
        }
    }
    widget->setGeometry(0, top - m_sheetTop, viewport()->width(), bottom - top);
}

void ConversationList::placeSheet()
{
    const int around = pagesAround * viewport()->height();
    const int top = std::max(0, verticalOffset() - around);
    const int bottom = std::min(contentHeight(), verticalOffset() + viewport()->height() + around);
    if (top < m_sheetTop || bottom - sheetHeight > m_sheetTop) {
        m_sheetTop = std::max(0, verticalOffset() - sheetHeight / 2);
        placeFrom(0);
    }
    m_sheet->move(0, m_sheetTop - verticalOffset());
}

int ConversationList::topIn(const QWidget *widget) const
{
    const QWidget *entryWidget = widget;
    while (entryWidget->parentWidget()->parentWidget() != m_sheet) {
        entryWidget = entryWidget->parentWidget();
    }
    const auto *const found = qobject_cast<const ConversationItem *>(entryWidget);
    const int top = found != nullptr ? topOf(row(found->listItem())) : 0;
    return top + widget->mapTo(entryWidget, QPoint()).y();
}

int ConversationList::rowAt(int y) const
{
    const auto next = std::upper_bound(m_tops.begin(), m_tops.end(), y);
    return std::min(static_cast<int>(next - m_tops.begin()), count()) - 1;
}

QWidget *ConversationList::part(int number)
{
    return itemWidget(item(number));
}

ConversationItem *ConversationList::entry(int row) const
{
    return qobject_cast<ConversationItem *>(itemWidget(item(row)));
}

bool ConversationList::isNear(int row) const
{
    return row >= m_firstNear && row <= m_lastNear;
}

void ConversationList::wakeNear()
{
    const int page = viewport()->height();
    const int first = std::max(0, rowAt(verticalOffset() - pagesAround * page));
    const int last = rowAt(verticalOffset() + (pagesAround + 1) * page);
    for (int row = m_firstNear; row <= m_lastNear; ++row) {
        if (row < first || row > last) {
            m_leaving.push_back(row);
        }
    }
    m_firstNear = first;
    m_lastNear = last;
    // A bar that is dragged leaves most of what is near before anybody sees it.
    for (int row = std::max(0, rowAt(verticalOffset())); row <= rowAt(verticalOffset() + page);
         ++row) {
        wake(row);
    }
    m_wakeTimer.start();
    if (!m_leaving.empty()) {
        m_sleepTimer.start();
    }
}

bool ConversationList::wake(int row)
{
    ConversationItem *const found = entry(row);
    if (found == nullptr || found->isAwake()) {
        return false;
    }
    found->wake();
    return true;
}

bool ConversationList::wakeOne()
{
    const int seen = rowAt(verticalOffset() + viewport()->height() / 2);
    for (int distance = 1; seen - distance >= m_firstNear || seen + distance <= m_lastNear;
         ++distance) {
        for (const int row : {seen + distance, seen - distance}) {
            if (isNear(row) && wake(row)) {
                return true;
            }
        }
    }
    return false;
}

void ConversationList::sleepFar()
{
    // What refuses, because it is in use, is asked again when more leaves.
    const auto isSettled = [this](int row) {
        ConversationItem *const found = isNear(row) ? nullptr : entry(row);
        return found == nullptr || found->sleep();
    };
    m_leaving.erase(std::remove_if(m_leaving.begin(), m_leaving.end(), isSettled), m_leaving.end());
}

void ConversationList::rowsInserted(const QModelIndex &parent, int start, int end)
{
    Q_UNUSED(parent)
    Q_UNUSED(end)
    layOutFrom(start);
}

void ConversationList::dataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                                   const QVector<int> &roles)
{
    QAbstractItemView::dataChanged(topLeft, bottomRight, roles);
    const auto at = static_cast<std::size_t>(topLeft.row());
    const bool oneOfSameHeight
        = topLeft.row() == bottomRight.row() && at + 1 < m_tops.size()
       && m_tops[at + 1] - m_tops[at] == item(topLeft.row())->sizeHint().height();
    if (!oneOfSameHeight) {
        layOutFrom(topLeft.row());
    }
}

void ConversationList::doItemsLayout()
{
    // Positions are always up to date; the stock list's own layout is left out.
    QAbstractItemView::doItemsLayout();
}

void ConversationList::updateGeometries()
{
    const int page = viewport()->height();
    verticalScrollBar()->setPageStep(page);
    verticalScrollBar()->setRange(0, std::max(0, contentHeight() - page));
}

void ConversationList::updateEditorGeometries()
{
    // The item widgets lie on the sheet, where layOutFrom() places them.
}

void ConversationList::scrollContentsBy(int dx, int dy)
{
    Q_UNUSED(dx)
    Q_UNUSED(dy)
    placeSheet();
    wakeNear();
}

void ConversationList::resizeEvent(QResizeEvent *event)
{
    QAbstractItemView::resizeEvent(event);
    for (QWidget *section : m_sections) {
        section->resize(viewport()->width(), section->height());
    }
    placeFrom(count());
    placeSheet();
    wakeNear();
}

void ConversationList::paintEvent(QPaintEvent *event)
{
    Q_UNUSED(event) // the item widgets show everything
}

int ConversationList::verticalOffset() const
{
    return verticalScrollBar()->value();
}

int ConversationList::horizontalOffset() const
{
    return 0;
}

void ConversationList::reveal(const QWidget *widget)
{
    const int top = topIn(widget);
    QScrollBar *bar = verticalScrollBar();
    // What is taller than the list is shown from its top.
    const int bottom = top + qMin(widget->height(), viewport()->height());
    bar->setValue(qBound(bottom - viewport()->height(), bar->value(), top));
}

QRect ConversationList::visualRect(const QModelIndex &index) const
{
    const auto at = static_cast<std::size_t>(index.row());
    if (!index.isValid() || at + 1 >= m_tops.size()) {
        return {};
    }
    const int width = index.data(Qt::SizeHintRole).toSize().width();
    return {0, m_tops[at] - verticalOffset(), width, m_tops[at + 1] - m_tops[at]};
}

QModelIndex ConversationList::indexAt(const QPoint &point) const
{
    const int y = point.y() + verticalOffset();
    if (y < 0 || y >= contentHeight()) {
        return {};
    }
    return model()->index(rowAt(y), 0);
}

void ConversationList::scrollTo(const QModelIndex &index, ScrollHint hint)
{
    const QRect place = visualRect(index);
    const int above = place.top();
    const int below = place.bottom() + 1 - viewport()->height();
    int move = 0;
    if (hint == PositionAtTop || (hint == EnsureVisible && above < 0)) {
        move = above;
    } else if (hint == PositionAtBottom || (hint == EnsureVisible && below > 0)) {
        move = below;
    } else if (hint == PositionAtCenter) {
        move = (above + below) / 2;
    }
    verticalScrollBar()->setValue(verticalOffset() + move);
}

bool ConversationList::focusNextPrevChild(bool next)
{
    while (wakeOne()) { // the key does not get into what sleeps
    }
    if (!QListWidget::focusNextPrevChild(next)) {
        return false;
    }
    const QWidget *focused = window()->focusWidget();
    if (focused != nullptr && m_sheet->isAncestorOf(focused)) {
        const int top = topIn(focused);
        const int bottom = top + focused->height() - viewport()->height();
        verticalScrollBar()->setValue(std::min(top, std::max(bottom, verticalOffset())));
    }
    return true;
}

QModelIndex ConversationList::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers)
{
    Q_UNUSED(modifiers)
    // Entries cannot be selected: the keys scroll instead.
    switch (action) {
    case MoveUp:
        verticalScrollBar()->triggerAction(QAbstractSlider::SliderSingleStepSub);
        break;
    case MoveDown:
        verticalScrollBar()->triggerAction(QAbstractSlider::SliderSingleStepAdd);
        break;
    case MovePageUp:
        verticalScrollBar()->triggerAction(QAbstractSlider::SliderPageStepSub);
        break;
    case MovePageDown:
        verticalScrollBar()->triggerAction(QAbstractSlider::SliderPageStepAdd);
        break;
    case MoveHome:
        verticalScrollBar()->triggerAction(QAbstractSlider::SliderToMinimum);
        break;
    case MoveEnd:
        verticalScrollBar()->triggerAction(QAbstractSlider::SliderToMaximum);
        break;
    default:
        break;
    }
    return {};
}

void ConversationList::setSelection(const QRect &rect, QItemSelectionModel::SelectionFlags command)
{
    Q_UNUSED(rect)
    Q_UNUSED(command)
}

QRegion ConversationList::visualRegionForSelection(const QItemSelection &selection) const
{
    Q_UNUSED(selection)
    return {};
}
