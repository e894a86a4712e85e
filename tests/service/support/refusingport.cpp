#include "tests/service/support/refusingport.h"

#include <QHostAddress>

RefusingPort::RefusingPort()
{
    if (!m_socket.bind(QHostAddress(QHostAddress::LocalHost))) {
        qFatal("No loopback port can be bound.");
    }
}
