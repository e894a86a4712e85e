#include "tests/service/support/testgateway.h"

#include <QFile>
#include <QThread>

namespace {

const char addressVariable[] = "MIRAVEL_TEST_GATEWAY_ADDRESS";
const char portVariable[] = "MIRAVEL_TEST_GATEWAY_PORT";
const char callsVariable[] = "MIRAVEL_TEST_GATEWAY_CALLS";
const char holdVariable[] = "MIRAVEL_TEST_GATEWAY_HANGS";

} // namespace

TestGateway::TestGateway()
{
    qunsetenv(addressVariable);
    qputenv(callsVariable, QFile::encodeName(callsFile()));
    qputenv(holdVariable, QFile::encodeName(holdFile()));
}

TestGateway::TestGateway(const QByteArray &address, int port)
    : TestGateway()
{
    qputenv(addressVariable, '=' + address); // never empty: Windows has no empty variables
    qputenv(portVariable, QByteArray::number(port));
}

TestGateway::~TestGateway()
{
    letGo();
    qunsetenv(addressVariable);
    qunsetenv(portVariable);
    qunsetenv(callsVariable);
    qunsetenv(holdVariable);
}

void TestGateway::holdBack() const
{
    QFile file(holdFile());
    if (!file.open(QIODevice::WriteOnly)) {
        qFatal("cannot write %s", qPrintable(file.fileName()));
    }
}

void TestGateway::letGo() const
{
    // Windows removes no file that the library is just looking at.
    while (QFile::exists(holdFile()) && !QFile::remove(holdFile())) {
        QThread::msleep(1);
    }
}

QStringList TestGateway::calls() const
{
    QFile file(callsFile());
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        return {};
    }
    return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

QStringList TestGateway::oneQuery()
{
    return {QStringLiteral("InitKorVpnTool(0, 0, 0)"),
            QStringLiteral("DoGetSelectedKorInfoBlock(\" \", 1, -1)")};
}

QString TestGateway::holdFile() const
{
    return m_folder.filePath(QStringLiteral("hold"));
}

QString TestGateway::callsFile() const
{
    return m_folder.filePath(QStringLiteral("calls"));
}
