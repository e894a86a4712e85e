#include "app/startup/singleapplication.h"

#include "app/startup/foreground.h"
#include "app/startup/processend.h"
#include "app/startup/servername.h"

#include <QFileInfo>
#include <QLocalServer>
#include <QLocalSocket>

#include <memory>

namespace {

constexpr int connectWaitMs = 500;
constexpr int dataWaitMs = 1000;

} // namespace

SingleApplication::SingleApplication(int &argc, char **argv)
    : QApplication(argc, argv)
    , m_serverName(QFileInfo(applicationFilePath()).fileName())
{
    // Qt would close the windows when the end of the session is only asked about, and another
    // program may still prevent it.
    setFallbackSessionManagementEnabled(false);
    connect(this, &QCoreApplication::aboutToQuit, this, &SingleApplication::makeRoomForNext);
    initLocalConnection();
}

bool SingleApplication::isRunning() const
{
    return m_isRunning;
}

void SingleApplication::initLocalConnection()
{
    m_isRunning = false;
    QLocalSocket socket;
    socket.connectToServer(m_serverName, QIODevice::ReadWrite);
    if (socket.waitForConnected(connectWaitMs)) {
        m_isRunning = true; // the connection alone is the message
        letPeerComeToFront(socket.socketDescriptor());
        return;
    }
    becomeFirstCopy();
}

void SingleApplication::becomeFirstCopy()
{
    m_localServer = new QLocalServer(this);
    connect(m_localServer, &QLocalServer::newConnection, this,
            &SingleApplication::NewLocalConnection);
    if (m_localServer->listen(m_serverName)) {
        return;
    }
    // A copy that crashed leaves its name behind. Any other obstacle: run without the guard.
    if (m_localServer->serverError() == QAbstractSocket::AddressInUseError
        && !isOwnFile(m_serverName)) {
        QLocalServer::removeServer(m_serverName);
        m_localServer->listen(m_serverName);
    }
}

void SingleApplication::makeRoomForNext()
{
    if (m_isEnding) {
        return;
    }
    m_isEnding = true;
    if (m_localServer != nullptr) {
        m_localServer->close();
    }
    endWithin(mostMsAfterLastWindow);
}

void SingleApplication::NewLocalConnection()
{
    std::unique_ptr<QLocalSocket> connection(m_localServer->nextPendingConnection());
    if (!connection) {
        return;
    }
    connection->waitForReadyRead(dataWaitMs); // nothing is sent; it ends when the other side leaves
    connection.reset();
    if (w) {
        w->raise();
        w->showNormal();
        w->activateWindow();
    }
}
