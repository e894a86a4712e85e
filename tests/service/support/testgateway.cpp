#include "tests/service/support/testgateway.h"

#include <QFile>

namespace {

const char addressVariable[] = "MIRAVEL_TEST_GATEWAY_ADDRESS";
const char portVariable[] = "MIRAVEL_TEST_GATEWAY_PORT";
const char callsVariable[] = "MIRAVEL_TEST_GATEWAY_CALLS";

} // namespace

TestGateway::TestGateway()
{
    qunsetenv(addressVariable);
    qputenv(callsVariable, QFile::encodeName(callsFile()));
}

TestGateway::TestGateway(const QByteArray &address, int port)
    : TestGateway()
{
    qputenv(addressVariable, '=' + address); // never empty: Windows has no empty variables
    qputenv(portVariable, QByteArray::number(port));
}

TestGateway::~TestGateway()
{
    qunsetenv(addressVariable);
    qunsetenv(portVariable);
    qunsetenv(callsVariable);
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

QString TestGateway::callsFile() const
{
    return m_folder.filePath(QStringLiteral("calls"));
}
