#pragma once

#include <QObject>
#include <QStringList>

class QWidget;

/// Keeps Qt from looking for plugins between two moments: when this is made and shortly after a
/// window's first picture. Looking costs a tenth of a start, and what is in the first picture needs
/// none but those that the application object loads. The bearer plugins are never
/// found. GUI thread only; make it after that object, and once.
class LatePlugins : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(LatePlugins)

public:
    LatePlugins();

    /// Qt finds plugins again as soon as \a window has been painted, or after a second: a window
    /// that starts minimised may never be painted.
    void endAfterPictureOf(QWidget &window);

signals:
    /// Qt looks for plugins again: the window has had its first picture, or its time is over.
    void ended();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void end();

    QStringList m_paths; ///< empty once Qt looks there again
};
