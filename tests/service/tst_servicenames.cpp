#include "service/diagnosis/netstatetestthread.h"
#include "service/diagnosis/pingoutput.h"
#include "service/diagnosis/probehosts.h"
#include "service/gateway/korvpntool.h"
#include "service/request/hotqueststhread.h"
#include "tests/support/fixednames.h"

#include <QTest>

#include <type_traits>

/// The names, types and orders that others count on, to the letter.
class TestServiceNames : public QObject
{
    Q_OBJECT

private slots:
    void timeouts_standInTheirOrder();
    void hotQuestsThread_hasOneSignal();
    void netStateTestThread_hasOneSignalAndNoSlots();
};

// The request.
static_assert(std::is_base_of_v<QWidget, httpsRequest>);
static_assert(hasType<QString httpsRequest::*>(&httpsRequest::configPath));
static_assert(hasType<int (httpsRequest::*)(const QString &, int, int, QByteArray *, QByteArray,
                                            bool)>(&httpsRequest::SendHttpsRequest));
static_assert(hasType<void (httpsRequest::*)(QString)>(&httpsRequest::httpsError_Log));
static_assert(hasType<void (httpsRequest::*)()>(&httpsRequest::getUseful_IpPort));
static_assert(hasType<bool (httpsRequest::*)(QString, int)>(&httpsRequest::NetSocketConnect));
static_assert(hasType<QString (httpsRequest::*)() const>(&httpsRequest::resolvedAddr));

// The endpoint, and the record of the VPN client's library.
static_assert(hasType<QString ServiceEndpoint::*>(&ServiceEndpoint::strAddr));
static_assert(hasType<QString ServiceEndpoint::*>(&ServiceEndpoint::strPort));
static_assert(std::is_same_v<decltype(KorInfoBlock::port), qint32>);
static_assert(offsetof(KorInfoBlock, port) == 0);
static_assert(std::is_same_v<std::remove_extent_t<decltype(KorInfoBlock::address)>, char>);
static_assert(offsetof(KorInfoBlock, address) == 164);

// The three calls: a plain class.
static_assert(!std::is_polymorphic_v<IdpInterface>);
static_assert(hasType<QJsonArray (IdpInterface::*)()>(&IdpInterface::hot_questions));
static_assert(hasType<QJsonArray (IdpInterface::*)(QString)>(&IdpInterface::association_questions));
static_assert(hasType<QJsonDocument (IdpInterface::*)(QString, QString, QString, QString, qint64)>(
    &IdpInterface::Ask_And_Answer));
static_assert(hasType<int IdpInterface::*>(&IdpInterface::hotTimeoutMs));
static_assert(hasType<int IdpInterface::*>(&IdpInterface::associationTimeoutMs));
static_assert(hasType<int IdpInterface::*>(&IdpInterface::askTimeoutMs));

// The worker.
static_assert(std::is_base_of_v<QThread, HotQuestsThread>);
static_assert(std::is_constructible_v<HotQuestsThread, QObject *>);
static_assert(hasType<void (HotQuestsThread::*)(QJsonArray)>(&HotQuestsThread::hotQuests_signal));

// The diagnosis.
static_assert(std::is_base_of_v<QObject, NetStateTestThread>);
static_assert(!std::is_base_of_v<QThread, NetStateTestThread>);
static_assert(hasType<void (NetStateTestThread::*)()>(&NetStateTestThread::netStateInfo_get));
static_assert(hasType<bool (*)(QString, QString &, int *, int, int *)>(&NetStateTestThread::Ping));
static_assert(
    hasType<int (NetStateTestThread::*)()>(&NetStateTestThread::InternalExternal_netJudg));
static_assert(hasType<int (NetStateTestThread::*)()>(&NetStateTestThread::NORVIK_logState));
static_assert(hasType<void (NetStateTestThread::*)(int, int, int, int)>(
    &NetStateTestThread::netStateInfo_signal));
static_assert(hasType<void (*)(const QString &, QString &, int *, int *)>(&parsePingOutput));
static_assert(hasType<QString (*)()>(&webProbeHost) && hasType<QString (*)()>(&itProbeHost)
              && hasType<QString (*)()>(&cloudProbeHost) && hasType<QString (*)()>(&publicDns1)
              && hasType<QString (*)()>(&publicDns2));

void TestServiceNames::timeouts_standInTheirOrder()
{
    const IdpInterface service;
    const auto place = [&service](const auto &member) {
        return reinterpret_cast<const char *>(&member) - reinterpret_cast<const char *>(&service);
    };
    QCOMPARE(place(service.request), std::ptrdiff_t(0));
    QVERIFY(place(service.request) < place(service.hotTimeoutMs));
    QVERIFY(place(service.hotTimeoutMs) < place(service.associationTimeoutMs));
    QVERIFY(place(service.associationTimeoutMs) < place(service.askTimeoutMs));
}

void TestServiceNames::hotQuestsThread_hasOneSignal()
{
    const QMetaObject &type = HotQuestsThread::staticMetaObject;
    QCOMPARE(declared(type, QMetaMethod::Signal),
             QStringList(QStringLiteral("hotQuests_signal(QJsonArray)")));
    QCOMPARE(declared(type, QMetaMethod::Slot), QStringList());
}

void TestServiceNames::netStateTestThread_hasOneSignalAndNoSlots()
{
    const QMetaObject &type = NetStateTestThread::staticMetaObject;
    QCOMPARE(declared(type, QMetaMethod::Signal),
             QStringList(QStringLiteral("netStateInfo_signal(int,int,int,int)")));
    QCOMPARE(declared(type, QMetaMethod::Slot), QStringList());
    const QMetaMethod signal
        = type.method(type.indexOfSignal("netStateInfo_signal(int,int,int,int)"));
    QCOMPARE(signal.parameterNames(),
             QByteArrayList({"netJudg", "localState", "desktopServerState", "norvikState"}));
}

QTEST_MAIN(TestServiceNames)
#include "tst_servicenames.moc"
