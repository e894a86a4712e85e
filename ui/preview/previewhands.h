#pragma once

#include "ui/preview/previewform.h"

#include <QPoint>
#include <Qt>

#include <optional>

class QMouseEvent;
class QWidget;

/// What the mouse does to the preview window: its title bar drags it, its invisible border resizes
/// it, a picture that is larger than its area is moved. A maximised window stays where it is.
class PreviewHands
{
public:
    /// The hands on \a window, which is filled with \a form and outlives this. Its border is
    /// \a borderWidth px wide.
    PreviewHands(QWidget *window, const PreviewForm &form, int borderWidth);

    /// Takes the border, the title bar or the picture with the left button.
    void press(const QMouseEvent &event);

    /// Moves what was taken to where the cursor is, which says what can be done there.
    void move(const QMouseEvent &event);

    /// Lets go of everything.
    void release();

    /// The edges that the border was last taken at; none when something else was taken.
    [[nodiscard]] Qt::Edges edges() const { return m_edges; }

    /// The edges that the window system says are dragged.
    void setEdges(Qt::Edges edges) { m_edges = edges; }

    [[nodiscard]] bool isOnTitleBar(const QPoint &position) const;

private:
    void pressBorder(Qt::Edges edges);
    void showCursor(const QPoint &position);
    [[nodiscard]] Qt::CursorShape cursorAt(const QPoint &position) const;

    QWidget *m_window;
    PreviewForm m_form;
    int m_borderWidth; ///< px
    Qt::Edges m_edges;
    std::optional<QPoint> m_dragOffset; ///< of the cursor in the window while that is dragged
};
