#pragma once

#include "demoprocess.h"
#include "signedcall.h"

#include <QJsonValue>
#include <QObject>
#include <QString>

/// What the tests of the demo service's faults share: one running service, with no fault at the
/// beginning of each test.
class FaultTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanupTestCase();

protected:
    const QString question = QStringLiteral("黑屏怎么办");
    const QString anyCall = QStringLiteral("any");
    const QString askCall = QStringLiteral("ask");

    /// Asks the question and waits at most \a ms milliseconds.
    CallReply ask(int ms = 20000);

    void setFault(const QString &call, const QString &kind, const QJsonValue &argument = {});

    DemoProcess m_service;
    int m_idleThreads = 0; ///< of the service when nobody is connected
};
