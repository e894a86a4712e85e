#pragma once

#include <QApplication>
#include <QPointer>
#include <QWidget>

class QLocalServer;

/// The application object. Its constructor finds out through a local socket, named after the
/// executable's file, whether another copy of the program already runs; the copy that runs brings
/// its window to the front when it is contacted. A session whose end is only asked about closes no
/// window; one that ends does end the program. Everything happens on the GUI thread.
class SingleApplication : public QApplication
{
    Q_OBJECT
    Q_DISABLE_COPY(SingleApplication)

public:
    /// Contacts the other copy, waiting at most 500 ms for it, or becomes the first copy itself.
    /// \a argc and \a argv must outlive the object, as QApplication asks for.
    SingleApplication(int &argc, char **argv);

    /// True when another copy answered: this one should end at once.
    [[nodiscard]] bool isRunning() const;

    /// The last window has closed, or the user's session ends: gives the name up, so that the next
    /// start gets its window, and lets the process live 3 s longer at most. Further calls do
    /// nothing.
    void makeRoomForNext();

    /// The window that is brought to the front; not owned, null until start-up sets it.
    QPointer<QWidget> w;

private slots:
    /// Another copy was started. Blocks for at most 1000 ms, until it has closed its end.
    void NewLocalConnection();

private:
    void initLocalConnection();
    void becomeFirstCopy();

    QLocalServer *m_localServer = nullptr; // child of this object
    QString m_serverName;
    bool m_isRunning = false;
    bool m_isEnding = false;
};
