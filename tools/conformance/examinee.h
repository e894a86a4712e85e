#pragma once

#include "service/request/requestsettings.h"
#include "service/request/requestsigning.h"
#include "tools/conformance/exchange.h"

#include <QByteArray>
#include <QString>

/// The call of the service, as the protocol names it.
enum class CallName { Hot, Association, Ask };

[[nodiscard]] QString nameOf(CallName call);

/// The service that is examined, and what is needed to speak to it. Every operation opens the
/// settings file anew.
class Examinee
{
public:
    /// Reads paths, ids and credentials from \a settingsFile, a Miravel.ini. \a address is scheme,
    /// host and port; empty to take them from the file too. \a waitMs is the longest wait.
    Examinee(const QString &settingsFile, const QString &address, int waitMs);

    [[nodiscard]] QString address() const { return m_address; }
    [[nodiscard]] QString tenant() const { return m_settings.tenantId; }
    [[nodiscard]] QString secret() const { return m_settings.secret; }
    [[nodiscard]] const ServiceEndpoint &server() const { return m_server; }
    [[nodiscard]] QString pathOf(CallName call) const;

    /// The body of a right request of \a call, as the program makes it.
    [[nodiscard]] QByteArray bodyOf(CallName call) const;

    /// What a request made now is signed with.
    [[nodiscard]] RequestCredentials credentials() const;

    /// A right request with \a body.
    [[nodiscard]] Letter letterOf(CallName call, const QByteArray &body) const;

    /// How long a reply of \a call is waited for: as long as the program does, but no longer than
    /// the examination as a whole allows.
    [[nodiscard]] int limitMs(CallName call) const;

    [[nodiscard]] Response send(const Letter &letter, int limitMs) const;

    [[nodiscard]] QString settingsFile() const { return m_settingsFile; }

private:
    QString m_settingsFile;
    QString m_address;
    ServiceEndpoint m_server;
    RequestSettings m_settings;
    int m_waitMs;
};
