#pragma once

#include <QStringList>
#include <QTemporaryDir>

/// Tells the library that stands in for the VPN client's what to answer, and what it was asked.
/// Works through the environment, so also for processes started while it lives; one at a time.
class TestGateway final
{
    Q_DISABLE_COPY_MOVE(TestGateway)

public:
    /// No gateway is selected.
    TestGateway();

    /// The gateway at \a address and \a port is selected.
    TestGateway(const QByteArray &address, int port);

    ~TestGateway();

    /// From now on the library does not answer, until it is let go or this ends.
    void holdBack() const;
    void letGo() const;

    /// The calls so far, in order, as the library wrote them.
    [[nodiscard]] QStringList calls() const;

    /// The two calls that one query is made of.
    [[nodiscard]] static QStringList oneQuery();

private:
    [[nodiscard]] QString callsFile() const;
    [[nodiscard]] QString holdFile() const;

    QTemporaryDir m_folder;
};
