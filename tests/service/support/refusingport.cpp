#include "tests/service/support/refusingport.h"

#include <QHostAddress>

RefusingPort::RefusingPort()
{
    if (!m_socket.bind(QHostAddress::LocalHost)) {
        qFatal("No loopback port can be bound: %s", qPrintable(m_socket.errorString()));
    }
}
