#pragma once

#include <QObject>
#include <QPointer>
#include <QSize>

class QLabel;
class QMovie;

/// Plays an animation in a label while it can be seen. Every frame is decoded on its whole canvas,
/// on the GUI thread, so those that play at a time have 8.4 million pixels together, and one has
/// 4.2 million at most; where there is no room, and nothing out of sight to take it from, the
/// picture stands still.
class AnimationPlay : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(AnimationPlay)

public:
    /// For \a label, which owns it, the animation in \a file with \a canvas px.
    AnimationPlay(QLabel *label, const QString &file, const QSize &canvas);
    ~AnimationPlay() override;

    /// Starts it if there is room. Returns whether it plays.
    bool start();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void release();
    void restart();
    [[nodiscard]] bool isForAnotherScreen() const;
    [[nodiscard]] bool isSeen() const;
    [[nodiscard]] static bool makeRoom(qint64 pixels);

    QLabel *m_label;
    QString m_file;
    QSize m_canvas;
    QPointer<QMovie> m_movie;
    qreal m_ratio = 1;   ///< of the screen that the movie is made for
    bool m_told = false; ///< that there is no room for it
};
