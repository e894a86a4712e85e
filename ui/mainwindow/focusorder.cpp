#include "ui/mainwindow/focusorder.h"

#include "ui/text/reader/readgroup.h"

#include <QWidget>

#include <algorithm>
#include <vector>

namespace {

struct Stop
{
    QWidget *widget;
    QPoint place;
};

bool before(const Stop &one, const Stop &other)
{
    return one.place.y() != other.place.y() ? one.place.y() < other.place.y()
                                            : one.place.x() < other.place.x();
}

/// Whether the fold of an answer hides all of \a widget. Being scrolled out of view is no matter.
bool isFoldedAway(const QWidget *widget)
{
    const QWidget *const entry = groupAround(widget);
    const auto *const group = dynamic_cast<const ReadGroup *>(entry);
    if (group == nullptr || group->readRole() != QAccessible::ListItem) {
        return false;
    }
    QRect seen = widget->rect();
    for (const QWidget *part = widget; part != entry; part = part->parentWidget()) {
        seen = seen.translated(part->pos()) & part->parentWidget()->rect();
    }
    return seen.isEmpty();
}

bool takesTab(const QWidget *widget)
{
    return widget->isVisible() && widget->isEnabled() && widget->focusProxy() == nullptr
        && (widget->focusPolicy() & Qt::TabFocus) != 0 && !isFoldedAway(widget);
}

/// Places are compared within one area: what is scrolled out of view has one like everything else.
void appendStops(QWidget *area, std::vector<QWidget *> &stops)
{
    std::vector<Stop> found;
    const QList<QWidget *> widgets = area->findChildren<QWidget *>();
    for (QWidget *widget : widgets) {
        if (!widget->isWindow() && takesTab(widget)) {
            found.push_back({widget, widget->mapTo(area, QPoint())});
        }
    }
    std::stable_sort(found.begin(), found.end(), before);
    for (const Stop &stop : found) {
        stops.push_back(stop.widget);
    }
}

} // namespace

QWidget *neighbourInReadingOrder(const QVector<QWidget *> &areas, const QWidget *current,
                                 bool forward)
{
    std::vector<QWidget *> stops;
    for (QWidget *area : areas) {
        if (area != nullptr) {
            appendStops(area, stops);
        }
    }
    if (stops.empty()) {
        return nullptr;
    }
    if (!forward) {
        std::reverse(stops.begin(), stops.end());
    }
    const auto here = std::find(stops.cbegin(), stops.cend(), current);
    const bool last = here == stops.cend() || here + 1 == stops.cend();
    return last ? stops.front() : *(here + 1);
}
