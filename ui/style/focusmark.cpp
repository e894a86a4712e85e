#include "ui/style/focusmark.h"

#include <QEvent>
#include <QPainter>
#include <QPushButton>

namespace {

constexpr QColor lineColour(42, 100, 244);
constexpr qreal radius = 6;
constexpr QMargins around(6, 3, 6, 3); ///< px of the line outside of the button

/// The line itself, in a widget that is as large as what it surrounds.
class FocusLine : public QWidget
{
public:
    explicit FocusLine(QWidget *surface)
        : QWidget(surface)
    {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setAttribute(Qt::WA_NoSystemBackground);
    }

protected:
    void paintEvent(QPaintEvent *event) override
    {
        Q_UNUSED(event)
        if (window()->testAttribute(Qt::WA_KeyboardFocusChange)) {
            QPainter painter(this);
            drawFocusLine(painter, rect());
        }
    }
};

/// The nearest widget around \a button that has room for the line.
QWidget *surfaceFor(const QWidget *button)
{
    QWidget *surface = button->parentWidget();
    while (!surface->isWindow()
           && !surface->rect().contains(button->rect().translated(button->mapTo(surface, QPoint()))
                                        + around)) {
        surface = surface->parentWidget();
    }
    return surface;
}

} // namespace

void drawFocusLine(QPainter &painter, const QRect &place)
{
    const QRectF line = QRectF(place).adjusted(0.5, 0.5, -0.5, -0.5);
    const qreal round = qMin(radius, line.height() / 2);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(lineColour);
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(line, round, round);
    painter.restore();
}

FocusMark::FocusMark(QPushButton *button)
    : QObject(button)
    , m_button(button)
{
    button->installEventFilter(this);
}

FocusMark::~FocusMark()
{
    removeLine();
}

FocusMark *FocusMark::of(const QWidget *widget)
{
    return widget == nullptr
             ? nullptr
             : widget->findChild<FocusMark *>(QString(), Qt::FindDirectChildrenOnly);
}

void FocusMark::refresh()
{
    if (!m_line.isNull()) {
        m_line->update();
    }
}

void FocusMark::addLine()
{
    removeLine();
    QWidget *surface = surfaceFor(m_button);
    m_line = new FocusLine(surface);
    m_line->setGeometry(m_button->rect().translated(m_button->mapTo(surface, QPoint())) + around);
    m_line->show();
}

void FocusMark::removeLine()
{
    if (!m_line.isNull()) {
        m_line->hide();
        m_line->deleteLater(); // what is around may be hiding its children right now
        m_line.clear();
    }
}

bool FocusMark::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusIn) {
        addLine();
    } else if (event->type() == QEvent::FocusOut || event->type() == QEvent::Hide) {
        removeLine();
    }
    return QObject::eventFilter(watched, event);
}
