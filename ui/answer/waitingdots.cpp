#include "ui/answer/waitingdots.h"

#include "ui/style/motion.h"

#include <QPainter>

#include <array>

namespace {

constexpr int patienceMs = 400; ///< most answers have come by then
constexpr int stepMs = 90;

// Places and sizes in px. The icons of the assistant begin at 23.
constexpr int left = 3;
constexpr int bottomGap = 6; ///< below the dots at rest
constexpr int dotCount = 3;
constexpr int dotSize = 4;
constexpr int dotDistance = 7; ///< from the left of one dot to that of the next

/// How far a dot has risen, step by step.
constexpr std::array<int, 14> rises{0, 1, 2, 3, 2, 1};
constexpr int highestRise = 3;
constexpr int stepsBetweenDots = 2;

constexpr QSize dotsSize((dotCount - 1) * dotDistance + dotSize, dotSize + highestRise);
constexpr QColor dotColour(117, 117, 117);

int riseOf(int dot, int step)
{
    const auto round = static_cast<int>(rises.size());
    return rises.at(static_cast<std::size_t>((step + round - dot * stepsBetweenDots) % round));
}

} // namespace

WaitingDots::WaitingDots(int foot, QWidget *conversation)
    : QWidget(conversation)
    , m_patience(this)
    , m_motion(this)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setGeometry({{left, foot - bottomGap - dotsSize.height()}, dotsSize});
    hide();
    m_patience.setSingleShot(true);
    m_patience.setInterval(patienceMs);
    connect(&m_patience, &QTimer::timeout, this, &QWidget::show);
    m_motion.setInterval(stepMs);
    connect(&m_motion, &QTimer::timeout, this, &WaitingDots::advance);
}

void WaitingDots::begin()
{
    if (m_waiting++ == 0) {
        m_patience.start();
    }
}

void WaitingDots::end()
{
    if (--m_waiting == 0) {
        m_patience.stop();
        hide();
    }
}

void WaitingDots::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    raise();
    m_step = 0;
    if (motionIsWanted()) {
        m_motion.start();
    }
}

void WaitingDots::hideEvent(QHideEvent *event)
{
    m_motion.stop();
    QWidget::hideEvent(event);
}

void WaitingDots::advance()
{
    m_step = (m_step + 1) % static_cast<int>(rises.size());
    update();
}

void WaitingDots::paintEvent(QPaintEvent *event)
{
    Q_UNUSED(event)
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(dotColour);
    for (int dot = 0; dot < dotCount; ++dot) {
        painter.drawEllipse(dot * dotDistance, highestRise - riseOf(dot, m_step), dotSize, dotSize);
    }
}
