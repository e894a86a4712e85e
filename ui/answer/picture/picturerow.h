#pragma once

#include <QWidget>

class AnimationPlay;
class PictureLabel;
class QLabel;
class QListWidgetItem;
class QPixmap;
class QPushButton;

/// A row of an answer that shows a picture, with a button over it for opening and copying it.
class PictureRow : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(PictureRow)

public:
    /// A row with nothing to be seen, as high as one for a picture that could not be read.
    explicit PictureRow(QWidget *parent);

    /// Gives the row the place of a picture of \a size px, which may be none.
    void setPlace(const QSize &size, bool isAnimated);

    /// Shows \a picture, which is scaled for the row.
    void showStill(const QPixmap &picture);

    /// Plays the animation in \a file with \a canvas px, if there is room for it. Returns whether
    /// it plays.
    bool play(const QString &file, const QSize &canvas);

    /// Whether it has an animation that plays or rests.
    [[nodiscard]] bool isPlaying() const;

    /// Whether any of the picture can be seen now.
    [[nodiscard]] bool isSeen() const;

    /// Shows nothing any more, unless an animation plays; the place stays.
    void dropPicture();

    /// Makes the row of a still picture as low as the picture in it, which takes \a width px.
    void fitToPicture(int width);

    /// Makes this the row of \a item of a list, which has its size from now on.
    void joinListAs(QListWidgetItem *item);

    [[nodiscard]] QLabel *label() const;
    [[nodiscard]] QPushButton *button() const { return m_button; }

    bool eventFilter(QObject *watched, QEvent *event) override;

signals:
    /// The row is painted without its picture, or with one for a screen of another scale.
    void pictureWanted();

    /// The row is higher or lower than it was.
    void heightChanged();

private:
    void setPictureSize(const QSize &size);

    PictureLabel *m_label;
    QPushButton *m_button;
    AnimationPlay *m_animation = nullptr; ///< once the picture has been played
    QListWidgetItem *m_item = nullptr;    ///< once it is in a list
    int lastPictureHeight = 0;            ///< px
};
