#pragma once

#include <QPixmap>
#include <QPoint>
#include <QPointer>
#include <QSize>
#include <QWidget>

#include <optional>

class PictureLabel;
class QLabel;
class QMovie;

/// The middle of the preview window: one label with a still or an animated picture in its centre.
/// What is larger than the area is cut at its edges and can be moved with the mouse.
class PictureArea : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(PictureArea)

public:
    explicit PictureArea(QWidget *parent);

    [[nodiscard]] QLabel *label() const;

    /// Shows the still picture \a original scaled to \a size px, all of it or, where that would be
    /// too large, the part that is seen. What was in the middle of the area stays there.
    void showPicture(const QPixmap &original, const QSize &size);

    /// Plays the animated picture in \a file; false when the file cannot be played, then nothing is
    /// shown.
    bool playMovie(const QString &file);

    /// Whether the picture is scaled to the area, its aspect ratio kept, or shown as it is.
    void setScaled(bool scaled);

    /// Puts the picture's middle into that of the area.
    void resetPan();

    /// Whether there is more of the picture than the area shows.
    [[nodiscard]] bool canPan() const;

    /// Takes the picture at \a cursor, if it can be moved.
    void startPan(const QPoint &cursor);

    /// Moves the picture that was taken with the mouse, as far as there is more of it.
    void panTo(const QPoint &cursor);

    /// Lets go of the picture.
    void endPan() { m_panCursor.reset(); }

    [[nodiscard]] bool isPanning() const { return m_panCursor.has_value(); }

    /// Holds an animated picture while nobody sees it.
    void setMoviePaused(bool paused);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void closeMovie();
    void setPictureSize(const QSize &size);
    void makePart();
    void makeForScreen();
    void placeLabel();
    void placePicture();
    [[nodiscard]] bool showsPart() const;
    [[nodiscard]] QSize range() const;
    [[nodiscard]] QPoint allowed(const QPoint &pan) const;

    PictureLabel *m_label;
    QPixmap m_original;                ///< null while an animated picture is shown
    QSize m_pictureSize;               ///< as it is shown, px
    QPoint m_partPlace;                ///< of what the label holds in it, px
    QPoint m_pan;                      ///< of the picture's middle out of that of the area, px
    std::optional<QPoint> m_panCursor; ///< while the picture is moved
    QPointer<QMovie> m_movie;          ///< owned by the label
};
