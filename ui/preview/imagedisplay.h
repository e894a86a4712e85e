#pragma once

#include <QPixmap>
#include <QPoint>
#include <QWidget>

#include <memory>

class PictureArea;
class PreviewHands;
class PreviewTitleBar;
class PreviewToolBar;

/// The frameless window that shows a picture of the conversation large. A still picture is zoomed
/// in steps of ten percent, an animated one plays from its file "gif/<index>.gif". The list of
/// pictures is the caller's: paging only reports which picture is wanted. Lives on the GUI thread.
class ImageDisplay : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(ImageDisplay)

public:
    explicit ImageDisplay(QWidget *parent = nullptr);
    ~ImageDisplay() override;

    /// Shows the first picture, once, before the window is shown: number \a number of the
    /// conversation, which belongs to the answer \a title. \a picture may be null. Runs
    /// PreviewWin_initial() itself.
    void PreviewWin(const QPixmap &picture, const QString &title, bool isAnimated, int number);

    /// Places the window in the middle of the screen at its first size and shows the picture that
    /// was handed over.
    void PreviewWin_initial();

    /// Shows another picture, with the same four values; a still one at scale 1.0.
    void changeImage(const QPixmap &picture, const QString &title, bool isAnimated, int number);

    /// Plays "gif/<n>.gif" and lets the tools take their state for animated pictures. When the file
    /// is gone, what was handed over with changeImage() is shown in its place, with a warning.
    void changeImage_gif(int n);

    /// Says which picture of the conversation is the current one; shows nothing new.
    void setCurrentIndex(int number);

    [[nodiscard]] int currentIndex() const { return index; }

    /// Says how many pictures the conversation has, which stands behind the title: "5 / 13".
    void setPictureCount(int count);

    /// Keeps the geometry that dragging an edge proposes at least 600 px wide. The edge is the one
    /// that the window system names, or at which the border was pressed; while none is known, the
    /// side that \a rect has moved.
    void setTempGeometry(QRect &rect);

    /// Keeps the geometry that dragging an edge proposes at least 400 px high, likewise.
    void setTempGeometry_03(QRect &rect);

signals:
    /// The picture before the current one is wanted; never below 0.
    void previousImage_signal(int number);

    /// The picture after the current one is wanted; the receiver knows whether there is one.
    void nextImage_signal(int number);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    // paintEvent() is one of the slots below.
    bool nativeEvent(const QByteArray &eventType, void *message, long *result) override;
    bool event(QEvent *event) override;

private slots:
    void min_windows_Imag();
    void max_windows_Imag();
    void MaxToNormal();
    void close_windows_Imag();
    void magnifier_clicked();
    void narrow_clicked();
    void oneToOneSize_clicked();
    void MaxPicWind_clicked();
    void nextImage_clicked();
    void previousImage_clicked();
    void paintEvent(QPaintEvent *event) override;

    /// Carries out the waiting zoom step. The window's size, though handed over, has no say in it.
    void ImageZooming_operation(int width, int height);

private:
    enum ZoomAction {
        NoZoom = 0,
        ZoomOut = 1,
        ZoomIn = 2,
    };

    void connectForm();
    void takePicture(const QPixmap &picture, const QString &title, bool animated, int number);
    void showStill();
    void showOriginal();
    void showScaled(const QSize &box);
    void showPosition();
    void playAnimation();
    void scaleIfLargerThanDesktop();
    void resetStill();
    void letGo();
    void windowStateChanged();

    QPixmap original;       ///< as handed over
    int originalWidth = 0;  ///< px
    int originalHeight = 0; ///< px
    float scale = 1.0F;
    int zoomAction = NoZoom; ///< carried out by the next paint
    bool isGif = false;
    int index = 0;   ///< of the picture in the conversation
    int m_count = 0; ///< of the pictures in the conversation, as far as it is known
    bool maximised = false;
    QPoint savedPos;     ///< of the window before it was maximised
    int borderWidth = 0; ///< of the invisible resize border, px

    std::unique_ptr<PreviewHands> m_hands;
    PreviewTitleBar *m_titleBar = nullptr;
    PictureArea *m_area = nullptr;
    PreviewToolBar *m_toolBar = nullptr;
};
