#include "ui/preview/previewhands.h"

#include "ui/preview/nativeresize.h"
#include "ui/preview/picturearea.h"
#include "ui/preview/previewtitlebar.h"
#include "ui/preview/resizeborder.h"

#include <QMouseEvent>
#include <QWindow>

PreviewHands::PreviewHands(QWidget *window, const PreviewForm &form, int borderWidth)
    : m_window(window)
    , m_form(form)
    , m_borderWidth(borderWidth)
{
}

void PreviewHands::press(const QMouseEvent &event)
{
    m_edges = {};
    if (event.button() != Qt::LeftButton) {
        return;
    }
    const bool fixed = m_window->isMaximized();
    const ResizeZone zone
        = fixed ? ResizeZone::None : resizeZoneAt(event.pos(), m_window->size(), m_borderWidth);
    if (zone != ResizeZone::None) {
        pressBorder(edgesOf(zone));
    } else if (isOnTitleBar(event.pos()) && !fixed) {
        m_dragOffset = event.globalPos() - m_window->pos();
    } else if (m_form.area->geometry().contains(event.pos())) {
        m_form.area->startPan(event.globalPos());
        showCursor(event.pos());
    }
}

/// Where the window system has no hit test of its own, it is asked to resize.
void PreviewHands::pressBorder(Qt::Edges edges)
{
    m_edges = edges;
    limitSystemResize(m_window, smallestDraggedSize);
    m_window->windowHandle()->startSystemResize(edges);
}

void PreviewHands::move(const QMouseEvent &event)
{
    if (event.buttons() == Qt::NoButton) {
        showCursor(event.pos());
    } else if (event.buttons() == Qt::LeftButton) {
        if (m_dragOffset && !m_window->isMaximized()) {
            m_window->move(event.globalPos() - *m_dragOffset);
        }
        m_form.area->panTo(event.globalPos());
    }
}

void PreviewHands::release()
{
    m_dragOffset.reset();
    if (m_form.area->isPanning()) {
        m_form.area->endPan();
        showCursor(m_window->mapFromGlobal(QCursor::pos()));
    }
}

bool PreviewHands::isOnTitleBar(const QPoint &position) const
{
    return m_form.titleBar->geometry().contains(position);
}

void PreviewHands::showCursor(const QPoint &position)
{
    m_window->setCursor(cursorAt(position));
}

Qt::CursorShape PreviewHands::cursorAt(const QPoint &position) const
{
    if (m_form.area->isPanning()) {
        return Qt::ClosedHandCursor;
    }
    const ResizeZone zone = m_window->isMaximized()
                              ? ResizeZone::None
                              : resizeZoneAt(position, m_window->size(), m_borderWidth);
    const bool canTake = zone == ResizeZone::None && m_form.area->canPan()
                      && m_form.area->geometry().contains(position);
    return canTake ? Qt::OpenHandCursor : cursorOf(zone);
}
