#include "ui/preview/imagedisplay.h"

#include "app/base/logstream.h"
#include "ui/preview/animationfile.h"
#include "ui/preview/nativeresize.h"
#include "ui/preview/picturearea.h"
#include "ui/preview/picturezoom.h"
#include "ui/preview/previewform.h"
#include "ui/preview/previewhands.h"
#include "ui/preview/previewtitlebar.h"
#include "ui/preview/previewtoolbar.h"
#include "ui/preview/resizeborder.h"
#include "ui/style/screenfollower.h"
#include "ui/text/richtext.h"
#include "ui/text/textwrap.h"

#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QtMath>

namespace {

constexpr QSize normalSize(920, 646);
constexpr int resizeBorderWidth = 4;

/// What the window adds to the height of its picture area.
constexpr int heightAroundPicture = 128;

} // namespace

ImageDisplay::ImageDisplay(QWidget *parent)
    : QWidget(parent)
{
    const PreviewForm form = buildPreviewForm(*this);
    m_titleBar = form.titleBar;
    m_area = form.area;
    m_toolBar = form.toolBar;
    borderWidth = resizeBorderWidth;
    m_hands = std::make_unique<PreviewHands>(this, form, borderWidth);
    connectForm();
    new ScreenFollower(this);       // which the window owns
    setFocusPolicy(Qt::ClickFocus); // no button looks chosen before Tab is pressed
    setFocus();
}

ImageDisplay::~ImageDisplay() = default;

void ImageDisplay::connectForm()
{
    const auto onClick = [this](QPushButton *button, void (ImageDisplay::*slot)()) {
        connect(button, &QPushButton::clicked, this, slot);
    };
    onClick(m_titleBar->minimiseButton(), &ImageDisplay::min_windows_Imag);
    onClick(m_titleBar->maximiseButton(), &ImageDisplay::max_windows_Imag);
    onClick(m_titleBar->closeButton(), &ImageDisplay::close_windows_Imag);
    onClick(m_toolBar->previousButton(), &ImageDisplay::previousImage_clicked);
    onClick(m_toolBar->nextButton(), &ImageDisplay::nextImage_clicked);
    onClick(m_toolBar->oneToOneButton(), &ImageDisplay::oneToOneSize_clicked);
    onClick(m_toolBar->fitButton(), &ImageDisplay::MaxPicWind_clicked);
    onClick(m_toolBar->zoomInButton(), &ImageDisplay::magnifier_clicked);
    onClick(m_toolBar->zoomOutButton(), &ImageDisplay::narrow_clicked);

    const auto onKey = [this](Qt::Key key, void (ImageDisplay::*slot)()) {
        connect(new QShortcut(key, this), &QShortcut::activated, this, slot);
    };
    onKey(Qt::Key_Escape, &ImageDisplay::close_windows_Imag);
    onKey(Qt::Key_Left, &ImageDisplay::previousImage_clicked);
    onKey(Qt::Key_Right, &ImageDisplay::nextImage_clicked);
}

void ImageDisplay::PreviewWin(const QPixmap &picture, const QString &title, bool isAnimated,
                              int number)
{
    takePicture(picture, title, isAnimated, number);
    PreviewWin_initial();
}

void ImageDisplay::PreviewWin_initial()
{
    resize(normalSize);
    const QRect desktop = screen()->geometry();
    move(desktop.center() - rect().center());
    if (isGif) {
        LOG_DEBUG() << "PreviewWin_initial gif";
        playAnimation();
    } else {
        LOG_DEBUG() << "PreviewWin_initial png";
        showStill();
    }
}

void ImageDisplay::changeImage(const QPixmap &picture, const QString &title, bool isAnimated,
                               int number)
{
    takePicture(picture, title, isAnimated, number);
    if (isGif) {
        changeImage_gif(number);
    } else {
        showStill();
    }
}

void ImageDisplay::changeImage_gif(int n)
{
    LOG_DEBUG() << "changeImage_gif";
    isGif = true;
    setCurrentIndex(n);
    playAnimation();
}

void ImageDisplay::takePicture(const QPixmap &picture, const QString &title, bool animated,
                               int number)
{
    original = picture;
    isGif = animated;
    setCurrentIndex(number);
    resetStill();
    m_titleBar->setPictureTitle(title);
    m_area->label()->setAccessibleName(readableText(shownPart(title)).simplified());
}

void ImageDisplay::setCurrentIndex(int number)
{
    index = number;
    showPosition();
}

void ImageDisplay::setPictureCount(int count)
{
    m_count = count;
    showPosition();
}

void ImageDisplay::showPosition()
{
    m_titleBar->setPosition(index, m_count);
}

void ImageDisplay::resetStill()
{
    zoomAction = NoZoom;
    scale = 1.0F;
    originalWidth = original.width();
    originalHeight = original.height();
}

void ImageDisplay::showOriginal()
{
    m_area->resetPan();
    m_area->showPicture(original, original.size());
}

/// Shows the picture scaled into \a box px.
void ImageDisplay::showScaled(const QSize &box)
{
    if (!original.isNull()) {
        m_area->setScaled(false); // the scale says how large it is shown
        m_area->showPicture(original, scaledSize(original.size(), box));
    }
}

void ImageDisplay::showStill()
{
    m_toolBar->setAnimated(false);
    m_area->setScaled(false);
    showOriginal();
    scaleIfLargerThanDesktop();
}

void ImageDisplay::playAnimation()
{
    m_toolBar->setAnimated(true);
    m_area->setScaled(false);
    const QString file = animationFile(index);
    if (original.isNull() || !isPlayable(original.size()) || !m_area->playMovie(file)) {
        LOG_WARNING() << "animated picture cannot be played: " << file;
        showOriginal();
    }
    scaleIfLargerThanDesktop();
}

void ImageDisplay::scaleIfLargerThanDesktop()
{
    if (exceedsDesktop({originalWidth, originalHeight}, screen()->size())) {
        LOG_DEBUG() << "source_pic width or height is bigger then desktop";
        m_area->setScaled(true);
    }
}

void ImageDisplay::min_windows_Imag()
{
    showMinimized();
}

void ImageDisplay::max_windows_Imag()
{
    if (maximised) {
        MaxToNormal();
        maximised = false;
        return;
    }
    if (isGif) {
        m_area->setScaled(false);
    }
    savedPos = pos();
    maximised = true;
    showMaximized();
    if (exceedsDesktop({originalWidth, originalHeight}, screen()->size())) {
        m_area->setScaled(true);
    }
}

void ImageDisplay::MaxToNormal()
{
    limitSystemResize(this, QSize(0, 0)); // a small animation makes a small window
    showNormal();
    move(savedPos);
    resize(normalSize);
    if (isGif) {
        m_area->setScaled(false);
        resize(originalWidth, originalHeight + heightAroundPicture);
    }
}

void ImageDisplay::close_windows_Imag()
{
    close();
}

void ImageDisplay::magnifier_clicked()
{
    zoomAction = ZoomIn;
    update();
}

void ImageDisplay::narrow_clicked()
{
    zoomAction = ZoomOut;
    update();
}

void ImageDisplay::oneToOneSize_clicked()
{
    m_area->setScaled(false);
    if (!isGif) {
        resetStill();
        showOriginal();
        return;
    }
    if (!maximised) {
        savedPos = pos();
        maximised = true;
    }
    showMaximized();
}

void ImageDisplay::MaxPicWind_clicked()
{
    if (original.isNull()) {
        return;
    }
    const PictureFit fit = fitToArea(original.size(), m_area->size());
    m_area->resetPan();
    showScaled(fit.box);
    scale = fit.ratio; // the next zoom step starts from here
    zoomAction = NoZoom;
}

void ImageDisplay::nextImage_clicked()
{
    // No upper bound: only the owner of the pictures knows how many there are.
    ++index;
    emit nextImage_signal(index);
}

void ImageDisplay::previousImage_clicked()
{
    if (index > 0) {
        --index;
        emit previousImage_signal(index);
    }
}

void ImageDisplay::paintEvent(QPaintEvent *event)
{
    QWidget::paintEvent(event);
    if (!isGif) {
        ImageZooming_operation(width(), height());
    }
}

void ImageDisplay::ImageZooming_operation(int width, int height)
{
    Q_UNUSED(width)
    Q_UNUSED(height)
    if (zoomAction == ZoomOut) {
        scale = scaleAfterZoomOut(scale);
    } else if (zoomAction == ZoomIn) {
        scale = scaleAfterZoomIn(scale);
    } else {
        return;
    }
    zoomAction = NoZoom;
    showScaled(zoomedSize({originalWidth, originalHeight}, scale));
}

void ImageDisplay::setTempGeometry(QRect &rect)
{
    if (rect.width() >= smallestDraggedSize.width()) {
        return;
    }
    LOG_DEBUG() << "reach min width !" << rect.size() << geometry().size();
    const Qt::Edges edges = m_hands->edges();
    rect = withSmallestWidth(rect, edges == Qt::Edges() ? rect.left() == geometry().left()
                                                        : edges.testFlag(Qt::RightEdge));
}

void ImageDisplay::setTempGeometry_03(QRect &rect)
{
    if (rect.height() >= smallestDraggedSize.height()) {
        return;
    }
    LOG_DEBUG() << "reach min height!";
    LOG_DEBUG() << "tempSize:" << rect.size();
    LOG_DEBUG() << "currSize:" << geometry().size();
    const Qt::Edges edges = m_hands->edges();
    rect = withSmallestHeight(rect, edges == Qt::Edges() ? rect.top() == geometry().top()
                                                         : edges.testFlag(Qt::BottomEdge));
}

void ImageDisplay::mousePressEvent(QMouseEvent *event)
{
    m_hands->press(*event);
}

void ImageDisplay::mouseReleaseEvent(QMouseEvent *event)
{
    Q_UNUSED(event)
    m_hands->release();
}

void ImageDisplay::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && m_hands->isOnTitleBar(event->pos())) {
        m_hands->release();
        max_windows_Imag();
    }
}

void ImageDisplay::mouseMoveEvent(QMouseEvent *event)
{
    m_hands->move(*event);
}

void ImageDisplay::wheelEvent(QWheelEvent *event)
{
    const QPoint turned = event->angleDelta();
    const int delta = turned.y() != 0 ? turned.y() : turned.x();
    zoomAction = delta < 1 ? ZoomOut : ZoomIn;
    update();
    event->accept();
}

bool ImageDisplay::nativeEvent(const QByteArray &eventType, void *message, long *result)
{
    const NativeResizeRequest request = readNativeResizeRequest(eventType, message);
    const qreal ratio = devicePixelRatioF(); // the window system counts in px of the screen
    if (request.kind == NativeResizeRequest::Kind::HitTest && !maximised) {
        const QPoint position(qFloor(request.cursor.x() / ratio),
                              qFloor(request.cursor.y() / ratio));
        const ResizeZone zone = resizeZoneAt(position, size(), borderWidth);
        if (zone != ResizeZone::None) {
            *result = static_cast<long>(zone);
            return true;
        }
    } else if (request.kind == NativeResizeRequest::Kind::Sizing) {
        QRect allowed = scaledDown(request.proposed, ratio);
        m_hands->setEdges(request.edges);
        setTempGeometry(allowed);
        setTempGeometry_03(allowed);
        writeProposedGeometry(message, scaledUp(allowed, request.proposed, ratio));
        *result = 1; // dealt with
        return true;
    }
    return QWidget::nativeEvent(eventType, message, result);
}

bool ImageDisplay::event(QEvent *event)
{
    switch (event->type()) {
    case QEvent::Show:
        m_area->setMoviePaused(false);
        break;
    case QEvent::Hide:
        m_area->setMoviePaused(true);
        break;
    case QEvent::Close:
        letGo();
        break;
    case QEvent::WindowStateChange:
        windowStateChanged();
        break;
    default:
        break;
    }
    return QWidget::event(event);
}

/// A closed window is not shown again, and its picture may be large.
void ImageDisplay::letGo()
{
    original = {};
    m_area->showPicture(original, QSize());
}

void ImageDisplay::windowStateChanged()
{
    // The window system can maximise and restore the window as well.
    if (isMaximized() && !maximised) {
        savedPos = normalGeometry().topLeft();
    }
    maximised = isMaximized();
    m_titleBar->setMaximised(maximised);
    m_hands->release();
}
