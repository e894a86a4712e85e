#include "ui/answer/picture/animationplay.h"

#include "app/base/logstream.h"
#include "ui/answer/picture/inlinepicture.h"
#include "ui/answer/picture/picturereading.h"
#include "ui/style/movierest.h"

#include <QEvent>
#include <QLabel>
#include <QMovie>

#include <algorithm>

namespace {

constexpr qint64 mostPixels = 8'400'000; ///< of all that play, some bytes each
constexpr qint64 mostOfOne = 4'200'000;
constexpr int mostPlaying = 100; ///< each holds a file open
constexpr qint64 pixelsOfALarge = 250'000;

/// Those that have a movie, the one that started first in front. GUI thread.
QVector<AnimationPlay *> &playing()
{
    static QVector<AnimationPlay *> plays;
    return plays;
}

} // namespace

AnimationPlay::AnimationPlay(QLabel *label, const QString &file, const QSize &canvas)
    : QObject(label)
    , m_label(label)
    , m_file(file)
    , m_canvas(canvas)
{
    label->installEventFilter(this);
}

AnimationPlay::~AnimationPlay()
{
    playing().removeOne(this);
}

bool AnimationPlay::makeRoom(qint64 pixels)
{
    if (pixels > mostOfOne) {
        return false;
    }
    qint64 sum = pixels;
    for (const AnimationPlay *play : qAsConst(playing())) {
        sum += pixelsOf(play->m_canvas);
    }
    const QVector<AnimationPlay *> before = playing();
    for (AnimationPlay *play : before) {
        if (sum <= mostPixels && playing().size() < mostPlaying) {
            break;
        }
        if (!play->isSeen()) {
            sum -= pixelsOf(play->m_canvas);
            play->release();
        }
    }
    return sum <= mostPixels && playing().size() < mostPlaying;
}

bool AnimationPlay::start()
{
    if (m_movie != nullptr) {
        return true;
    }
    if (!makeRoom(pixelsOf(m_canvas))) {
        if (!m_told) {
            LOG_WARNING()
                << "animation is too large to be played, only its first picture is shown: "
                << m_canvas.width() << "x" << m_canvas.height();
        }
        m_told = true;
        return false;
    }
    playing().append(this);
    m_movie = new QMovie(m_file, QByteArray(), m_label);
    m_ratio = m_label->devicePixelRatioF();
    if (m_ratio > 1 || pixelsOf(m_canvas) > pixelsOfALarge) {
        // Or each frame is kept twice in full, and a scaled screen shows it coarse.
        m_movie->setScaledSize(sizeOnScreen(m_label->size(), m_ratio));
    }
    new MovieRest(m_movie, m_label); // which the movie owns
    m_label->setScaledContents(true);
    m_label->setMovie(m_movie);
    m_movie->start();
    return true;
}

bool AnimationPlay::isSeen() const
{
    return !m_label->visibleRegion().isEmpty();
}

/// Leaves nothing: it is not seen, and starts again when it is.
void AnimationPlay::release()
{
    playing().removeOne(this);
    m_label->clear();
    delete m_movie;
    m_movie.clear();
}

bool AnimationPlay::isForAnotherScreen() const
{
    return m_movie != nullptr && !qFuzzyCompare(m_ratio, m_label->devicePixelRatioF());
}

void AnimationPlay::restart()
{
    if (isForAnotherScreen()) {
        release();
        start();
    }
}

bool AnimationPlay::eventFilter(QObject *watched, QEvent *event)
{
    // Not inside the painting, which a new movie would disturb.
    if (event->type() == QEvent::Paint && m_movie == nullptr && !m_told) {
        QMetaObject::invokeMethod(this, &AnimationPlay::start, Qt::QueuedConnection);
    } else if (event->type() == QEvent::Paint && isForAnotherScreen()) {
        QMetaObject::invokeMethod(this, &AnimationPlay::restart, Qt::QueuedConnection);
    }
    return QObject::eventFilter(watched, event);
}
