#pragma once

#include <QLabel>
#include <QPoint>

/// A label that can show its picture, still or animated, beside its middle. What lies outside of
/// the label is not drawn, however large the picture is. On a scaled screen it is painted in the
/// pixels of that screen.
class PictureLabel : public QLabel
{
    Q_OBJECT
    Q_DISABLE_COPY(PictureLabel)

public:
    explicit PictureLabel(QWidget *parent);

    /// Shows the picture's middle \a offset px beside the label's; (0, 0) is in the middle.
    void setOffset(const QPoint &offset);

    [[nodiscard]] QPoint offset() const { return m_offset; }

    /// The picture that is shown, of an animated one the present frame; null when there is none.
    [[nodiscard]] QPixmap shownPicture() const;

    /// The size of that picture, in device-independent px.
    [[nodiscard]] QSize shownSize() const;

signals:
    /// A still picture was painted that is made for a screen of another scale.
    void screenDiffers();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void paintScaled(const QPixmap &picture);
    void paintStretched(const QPixmap &picture);

    QPoint m_offset;
};
