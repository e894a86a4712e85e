#pragma once

#include <QWidget>

class QLabel;
class QPixmap;
class QPushButton;

/// A row of an answer that shows a picture, with a button over it that a click opens it with.
class PictureRow : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(PictureRow)

public:
    /// A row for the still picture \a pixmap, scaled down to the size that answers show; a null one
    /// makes an empty row of 4 px.
    PictureRow(const QPixmap &pixmap, QWidget *parent);

    /// A row for the animation in \a file, whose first frame is \a pixmap.
    PictureRow(const QPixmap &pixmap, const QString &file, QWidget *parent);

    [[nodiscard]] QLabel *label() const { return m_label; }
    [[nodiscard]] QPushButton *button() const { return m_button; }

private:
    explicit PictureRow(QWidget *parent);
    void setPictureSize(const QSize &size);

    QLabel *m_label;
    QPushButton *m_button;
};
