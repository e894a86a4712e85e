#pragma once

#include <QPointer>
#include <QWidget>

class QLabel;
class QMovie;
class QPixmap;

/// The middle of the preview window: one label with a still or an animated picture in its centre.
/// What is larger than the area is cut at its edges.
class PictureArea : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(PictureArea)

public:
    explicit PictureArea(QWidget *parent);

    [[nodiscard]] QLabel *label() const { return m_label; }

    /// Shows a still picture. The picture that is shown already costs nothing, so this may be
    /// called with every paint.
    void showPicture(const QPixmap &picture);

    /// Plays the animated picture in \a file; false when the file cannot be played, then nothing is
    /// shown.
    bool playMovie(const QString &file);

    /// Whether the picture is scaled to the area, its aspect ratio kept, or shown as it is.
    void setScaled(bool scaled);

    /// Holds an animated picture while nobody sees it.
    void setMoviePaused(bool paused);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void closeMovie();
    void placeLabel();

    QLabel *m_label;
    QPointer<QMovie> m_movie; ///< owned by the label
};
