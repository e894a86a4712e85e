#include "localchannel/asyntcpsocket.h"

#include "app/base/logstream.h"
#include "app/base/texttools.h"
#include "localchannel/descriptorroom.h"
#include "localchannel/peerhasleft.h"

#include <QHostAddress>
#include <QTcpServer>
#include <QThread>
#include <QTimer>

namespace {

constexpr int acceptAgainMs = 1000;
constexpr int mostPending = 30; // as Qt has it

} // namespace

AsynTcpSocket::AsynTcpSocket(QObject *parent)
    : QObject(parent)
{
}

void AsynTcpSocket::CreateServerSocket(unsigned short port)
{
    tcpServer = new QTcpServer(this);
    if (!tcpServer->listen(QHostAddress(QStringLiteral("127.0.0.1")), port)) {
        const QString reason = tcpServer->errorString();
        LOG_CRITICAL() << reason;
        emit socketerror(reason);
        return;
    }
    LOG_INFO() << QStringLiteral("Tcp listen the port %1 is success.").arg(port)
               << ", time: " << timeOfDay();
    connect(tcpServer, &QTcpServer::newConnection, this, [this] {
        acceptClient();
        pauseWhenFull();
    });
    connect(tcpServer, &QTcpServer::acceptError, this, [this] { acceptLater(); });
}

void AsynTcpSocket::acceptLater()
{
    // Qt stops accepting for good after an error.
    LOG_WARNING() << "connection cannot be accepted: " << tcpServer->errorString();
    QTimer::singleShot(acceptAgainMs, tcpServer, &QTcpServer::resumeAccepting);
}

/// Clients may not take every descriptor: the rest of the program needs some. And Qt, once it had
/// nobody to accept, takes the lack of one for that and tries again without a pause.
void AsynTcpSocket::pauseWhenFull()
{
    if (!hasDescriptorsToSpare(tcpServer->socketDescriptor())) {
        LOG_WARNING() << "too many clients are connected, the next ones wait.";
        tcpServer->setMaxPendingConnections(0); // Qt is just accepting: no pause of it ends that
        QTimer::singleShot(acceptAgainMs, this, &AsynTcpSocket::goOnWithRoom);
    }
}

void AsynTcpSocket::goOnWithRoom()
{
    if (hasDescriptorsToSpare(tcpServer->socketDescriptor())) {
        tcpServer->setMaxPendingConnections(mostPending);
        tcpServer->resumeAccepting();
    } else {
        QTimer::singleShot(acceptAgainMs, this, &AsynTcpSocket::goOnWithRoom);
    }
}

quint16 AsynTcpSocket::serverPort() const
{
    return tcpServer == nullptr ? quint16(0) : tcpServer->serverPort();
}

void AsynTcpSocket::acceptClient()
{
    const QString time = timeOfDay();
    QTcpSocket *socket = tcpServer->nextPendingConnection();
    if (socket == nullptr) {
        return;
    }
    noticeDepartures(socket);
    LOG_INFO() << "TcpServer have a new connection, ip: " << socket->peerAddress().toString()
               << ", port:" << socket->peerPort() << ", time: " << time;
    socket->setSocketOption(QAbstractSocket::LowDelayOption, 1); // replies are short
    connect(socket, &QTcpSocket::readyRead, this, &AsynTcpSocket::ReadSocket);
    connect(socket, &QTcpSocket::disconnected, this, &AsynTcpSocket::CloseSocket);
    connect(socket, &QTcpSocket::errorOccurred, this, &AsynTcpSocket::ErrorSocket);
}

void AsynTcpSocket::noticeDepartures(const QTcpSocket *newcomer)
{
    // On Windows Qt may tell of the newcomer's message before it tells that an earlier
    // client has left, which would then take the newcomer along.
    const auto sockets
        = tcpServer->findChildren<QTcpSocket *>(QString(), Qt::FindDirectChildrenOnly);
    for (QTcpSocket *socket : sockets) {
        if (socket != newcomer && socket->state() == QAbstractSocket::ConnectedState
            && peerHasLeft(socket->socketDescriptor())) {
            socket->waitForReadyRead(0); // meets the end and tells of it
        }
    }
}

void AsynTcpSocket::ReadSocket()
{
    LOG_INFO() << "have received message from " << sender() << "time: " << timeOfDay();
    setClient(qobject_cast<QTcpSocket *>(sender()));
    if (!clientSocket.isNull()) {
        emit socketsuccess(clientSocket->readAll());
    }
}

void AsynTcpSocket::CloseSocket()
{
    LOG_INFO() << "Client is disconnected from " << sender();
    if (!clientSocket.isNull()) {
        clientSocket->deleteLater(); // whichever client has gone
        setClient(nullptr);
    }
}

void AsynTcpSocket::ErrorSocket(QAbstractSocket::SocketError error)
{
    LOG_INFO() << "ErrorSocket from " << sender();
    if (clientSocket.isNull()) {
        return;
    }
    const QString text = QStringLiteral("The following error occurred, errno:%1, %2.")
                             .arg(QString::number(error), clientSocket->errorString());
    LOG_INFO() << text;
    emit socketerror(text);
}

void AsynTcpSocket::setClient(QTcpSocket *socket)
{
    clientSocket = socket;
    m_hasClient = socket != nullptr;
}

void AsynTcpSocket::ResponseContent(QByteArray data)
{
    if (QThread::currentThread() == thread()) {
        write(data);
        return;
    }
    // A socket may only be used by its own thread; posted calls keep their order.
    QMetaObject::invokeMethod(
        this, [this, data] { write(data); }, Qt::QueuedConnection);
}

void AsynTcpSocket::write(const QByteArray &data)
{
    if (clientSocket.isNull() || !clientSocket->isValid() || !clientSocket->isWritable()
        || clientSocket->bytesToWrite() > unreadLimit) {
        LOG_WARNING() << "haven't found the valid client socket.";
        return;
    }
    clientSocket->write(data);
    clientSocket->flush();
}
