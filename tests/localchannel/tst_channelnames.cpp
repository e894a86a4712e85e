#include "localchannel/asyntcpsocket.h"
#include "localchannel/sysguardqueststhread.h"
#include "tests/support/fixednames.h"

#include <QTest>

#include <type_traits>

/// The names, types and orders that others count on, to the letter.
class TestChannelNames : public QObject
{
    Q_OBJECT

private slots:
    void asynTcpSocket_signalsAndPrivateSlots();
    void sysguardQuestsThread_signalAndPublicSlots();
};

// The loopback server.
static_assert(
    std::is_base_of_v<QObject, AsynTcpSocket> && !std::is_base_of_v<QThread, AsynTcpSocket>);
static_assert(std::is_constructible_v<AsynTcpSocket, QObject *>);
static_assert(hasType<void (AsynTcpSocket::*)(unsigned short)>(&AsynTcpSocket::CreateServerSocket));
static_assert(hasType<void (AsynTcpSocket::*)(QByteArray)>(&AsynTcpSocket::ResponseContent));
static_assert(hasType<void (AsynTcpSocket::*)(QByteArray)>(&AsynTcpSocket::socketsuccess));
static_assert(hasType<void (AsynTcpSocket::*)(QString)>(&AsynTcpSocket::socketerror));

// The queue.
static_assert(std::is_base_of_v<QThread, SysguardQuestsThread>);
static_assert(std::is_constructible_v<SysguardQuestsThread, QObject *>);
static_assert(
    hasType<void (SysguardQuestsThread::*)(QJsonObject)>(&SysguardQuestsThread::sysQuests_signal));
static_assert(
    hasType<void (SysguardQuestsThread::*)(QByteArray)>(&SysguardQuestsThread::socketReadData));
static_assert(
    hasType<void (SysguardQuestsThread::*)()>(&SysguardQuestsThread::rightRegionIniSuccess));
static_assert(
    hasType<void (SysguardQuestsThread::*)()>(&SysguardQuestsThread::QAFinishedNestQuest));

void TestChannelNames::asynTcpSocket_signalsAndPrivateSlots()
{
    const QMetaObject &type = AsynTcpSocket::staticMetaObject;
    QCOMPARE(declared(type, QMetaMethod::Signal),
             QStringList({QStringLiteral("socketsuccess(QByteArray)"),
                          QStringLiteral("socketerror(QString)")}));
    QCOMPARE(declared(type, QMetaMethod::Slot),
             QStringList({QStringLiteral("ReadSocket()"), QStringLiteral("CloseSocket()"),
                          QStringLiteral("ErrorSocket(QAbstractSocket::SocketError)")}));
    QVERIFY(slotsAre(type, QMetaMethod::Private));
}

void TestChannelNames::sysguardQuestsThread_signalAndPublicSlots()
{
    const QMetaObject &type = SysguardQuestsThread::staticMetaObject;
    QCOMPARE(declared(type, QMetaMethod::Signal),
             QStringList(QStringLiteral("sysQuests_signal(QJsonObject)")));
    QCOMPARE(declared(type, QMetaMethod::Slot),
             QStringList({QStringLiteral("socketReadData(QByteArray)"),
                          QStringLiteral("rightRegionIniSuccess()"),
                          QStringLiteral("QAFinishedNestQuest()")}));
    QVERIFY(slotsAre(type, QMetaMethod::Public));
    QCOMPARE(type.method(type.indexOfSlot("socketReadData(QByteArray)")).parameterNames(),
             QByteArrayList({"tempData"}));
}

QTEST_GUILESS_MAIN(TestChannelNames)
#include "tst_channelnames.moc"
