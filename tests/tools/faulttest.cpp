#include "faulttest.h"

#include <QTest>

void FaultTest::initTestCase()
{
    QVERIFY(m_service.start());
    m_idleThreads = m_service.threadCount();
}

void FaultTest::init()
{
    setFault(anyCall, QStringLiteral("none"));
}

void FaultTest::cleanupTestCase()
{
    QVERIFY2(m_service.isRunning(), "the service ended by itself");
    QCOMPARE(m_service.stop(), 0);
}

CallReply FaultTest::ask(int ms)
{
    return sendSigned(m_service.httpUrl(askPath), compactJson(askBody(question)), {}, ms);
}

void FaultTest::setFault(const QString &call, const QString &kind, const QJsonValue &argument)
{
    const QByteArray mistake = m_service.setFault({{QStringLiteral("call"), call},
                                                   {QStringLiteral("kind"), kind},
                                                   {QStringLiteral("arg"), argument}});
    QVERIFY2(mistake.isEmpty(), mistake.constData());
}
