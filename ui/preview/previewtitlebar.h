#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

/// The title bar of the preview window: its title, the title of the picture and the buttons
/// minimise, maximise and close. The window itself is dragged by it.
class PreviewTitleBar : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(PreviewTitleBar)

public:
    explicit PreviewTitleBar(QWidget *parent);

    /// Shows \a title, the answer that the picture belongs to, cut to the room there is. Markup in
    /// it is left out.
    void setPictureTitle(const QString &title);

    /// Says that picture number \a number, counted from 0, of \a count is shown; nothing while
    /// there is no such picture.
    void setPosition(int number, int count);

    /// Names the maximise button after what it does next.
    void setMaximised(bool maximised);

    [[nodiscard]] QPushButton *minimiseButton() const { return m_minimise; }
    [[nodiscard]] QPushButton *maximiseButton() const { return m_maximise; }
    [[nodiscard]] QPushButton *closeButton() const { return m_close; }

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void cutPictureTitle();

    QString m_fullPictureTitle;
    QLabel *m_position;
    QLabel *m_pictureTitle;
    QPushButton *m_minimise;
    QPushButton *m_maximise;
    QPushButton *m_close;
};
