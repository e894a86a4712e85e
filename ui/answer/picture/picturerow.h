#pragma once

#include <QWidget>

class QImage;
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
    /// A row for a picture of \a size px, with nothing to be seen yet; a picture that could not be
    /// read makes one of 4 px.
    PictureRow(const QSize &size, QWidget *parent);

    /// Shows the picture of the image tag \a part: \a pixmap, scaled down to the row, when it is a
    /// still one, else the animation in the file \a gifPath.
    void showPicture(const QString &part, const QPixmap &pixmap, const QString &gifPath);

    /// The same for a picture \a bytes of \a size px that is not decoded yet: the row has its place
    /// at once and shows the picture when it has been decoded elsewhere.
    void showLater(const QString &part, const QByteArray &bytes, const QSize &size,
                   const QString &gifPath);

    /// Makes the row of a still picture as low as the picture in it, which takes \a width px.
    void fitToPicture(const QString &part, int width);

    /// Makes this the row of \a item of a list, which has its size from now on.
    void joinListAs(QListWidgetItem *item);

    [[nodiscard]] QLabel *label() const { return m_label; }
    [[nodiscard]] QPushButton *button() const { return m_button; }

private:
    void setPictureSize(const QSize &size);
    [[nodiscard]] bool play(const QString &file, const QSize &canvas);
    void takeDecoded(int number, const QImage &image);

    QLabel *m_label;
    QPushButton *m_button;
    QListWidgetItem *m_item = nullptr; ///< once it is in a list
    int m_awaited = 0;                 ///< the number of what is being decoded for it
    int lastPictureHeight = 0;         ///< px
};
