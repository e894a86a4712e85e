#include "tests/localchannel/support/freeport.h"

#include <QHostAddress>
#include <QRandomGenerator>
#include <QTcpServer>

namespace {

constexpr int lowest = 20'000;
constexpr int highest = 32'000;
constexpr int attempts = 100;

} // namespace

quint16 freePort()
{
    for (int i = 0; i < attempts; ++i) {
        const auto port
            = static_cast<quint16>(QRandomGenerator::global()->bounded(lowest, highest));
        QTcpServer probe;
        if (probe.listen(QHostAddress(QHostAddress::LocalHost), port)) {
            return port;
        }
    }
    qFatal("No loopback port is free.");
    return 0;
}
