#include "localchannel/peerhasleft.h"

#include <QDeadlineTimer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QThread>

#include <cerrno>
#include <memory>

/// Whether the other side of a connection has closed it, asked without taking what it has sent.
class TestPeerHasLeft : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_here.reset(); }
    void silentPeer_isThere();
    void peerThatHasSent_isThere();
    void peerThatHasClosed_hasLeft();
    void peerThatHasSentAndClosed_isThereUntilItsBytesAreRead();
    void peerThatHasBrokenOff_hasLeft();
    void noConnection_hasNoPeer();

private:
    [[nodiscard]] bool hasLeft() const
    {
        errno = 0; // or what went wrong before may look like an answer
        return peerHasLeft(m_here->socketDescriptor());
    }

    /// Without events, in which the socket would notice it, too.
    [[nodiscard]] bool leavesSoon() const
    {
        const QDeadlineTimer soon(5000);
        while (!hasLeft() && !soon.hasExpired()) {
            QThread::msleep(1);
        }
        return hasLeft();
    }

    std::unique_ptr<QTcpSocket> m_here;
    QTcpSocket m_peer;
};

void TestPeerHasLeft::init()
{
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    m_peer.abort();
    m_peer.connectToHost(QHostAddress::LocalHost, server.serverPort());
    QVERIFY(server.waitForNewConnection(5000));
    m_here.reset(server.nextPendingConnection());
    m_here->setParent(nullptr);
    QVERIFY(m_peer.waitForConnected());
}

void TestPeerHasLeft::silentPeer_isThere()
{
    QVERIFY(!hasLeft());
}

void TestPeerHasLeft::peerThatHasSent_isThere()
{
    m_peer.write("a");
    QVERIFY(m_peer.waitForBytesWritten());
    for (int i = 0; i < 100; ++i) { // the byte is on its way, and stays when it is there
        QVERIFY(!hasLeft());
    }
    QVERIFY(m_here->waitForReadyRead());
    QCOMPARE(m_here->readAll(), QByteArray("a"));
}

void TestPeerHasLeft::peerThatHasClosed_hasLeft()
{
    m_peer.close();
    QVERIFY(leavesSoon());
}

void TestPeerHasLeft::peerThatHasSentAndClosed_isThereUntilItsBytesAreRead()
{
    m_peer.write("a");
    QVERIFY(m_peer.waitForBytesWritten());
    m_peer.close();
    QVERIFY(!hasLeft());
    QVERIFY(m_here->waitForReadyRead());
    QCOMPARE(m_here->readAll(), QByteArray("a"));
}

void TestPeerHasLeft::peerThatHasBrokenOff_hasLeft()
{
    m_here->write("a");
    QVERIFY(m_here->waitForBytesWritten());
    m_peer.abort(); // with a byte unread, which resets the connection
    QVERIFY(leavesSoon());
}

void TestPeerHasLeft::noConnection_hasNoPeer()
{
    QVERIFY(peerHasLeft(-1));
}

QTEST_GUILESS_MAIN(TestPeerHasLeft)
#include "tst_peerhasleft.moc"
