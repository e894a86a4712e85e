#pragma once

#include <QObject>

class QMovie;
class QWidget;

/// Lets a movie rest while nobody sees it: it is paused at the first frame before which the last
/// one was not painted, be it that its label is scrolled out of sight, covered or cut off by what
/// is around it, or that the window is hidden or minimised. It goes on as soon as the label is
/// painted again.
class MovieRest : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(MovieRest)

public:
    /// Watches \a label, which shows \a movie, as long as the movie lives, which owns this.
    MovieRest(QMovie *movie, QWidget *label);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void frameCame();
    void rest();
    void goOn();

    QMovie *m_movie;
    bool m_painted = true;  ///< since the last frame
    bool m_hidden = false;  ///< the label, or its window is minimised
    bool m_resting = false; ///< paused by this, not by another
};
