#pragma once

#include "service/request/sharedendpoint.h"

#include <QByteArray>
#include <QNetworkRequest>
#include <QString>
#include <QWidget>

/// Sends signed requests to the question service and finds out where it is reached. A widget that
/// is never shown: it is made and destroyed on the GUI thread. Its operations may be called from
/// any thread and from several at once, as long as nobody changes configPath meanwhile; each call
/// owns its network objects, blocks its thread in a nested event loop and throws nothing.
class httpsRequest : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(httpsRequest)

public:
    explicit httpsRequest(QWidget *parent = nullptr);

    /// Path of "Miravel.ini", fixed by the installation layout at construction; empty when that is
    /// unknown, and every key then reads as missing. The file is opened anew for every call.
    QString configPath;

    /// Posts \a body (compact JSON) to \a urlPath of the resolved endpoint and waits up to
    /// \a timeoutMs milliseconds for the whole reply, whose bytes then replace those of
    /// \a replyBuffer. \a httpMode 0 is http, anything else https. With \a configFallback the
    /// configured server stands in for an endpoint that is not resolved. Returns 0 when the reply
    /// ended in time, be it with a network or HTTP error, and -1, leaving the buffer alone, when
    /// it did not or the program ended first. While another object resolves the endpoint anew, the
    /// request goes where this one's own last resolution led.
    int SendHttpsRequest(const QString &urlPath, int httpMode, int timeoutMs,
                         QByteArray *replyBuffer, QByteArray body, bool configFallback);

    /// Logs a reply text: a warning with the text itself unless it carries the service's mark of
    /// success.
    void httpsError_Log(QString buf);

    /// Resolves the process-wide endpoint: the configured server when it can be reached within a
    /// second, else the gateway that the VPN client has selected, else nothing.
    void getUseful_IpPort();

    /// Whether a TCP connection to \a host and \a port (its low 16 bits) comes about within 1000
    /// ms. Only success ends the wait early.
    bool NetSocketConnect(QString host, int port);

    /// A copy of the address of the resolved endpoint.
    [[nodiscard]] QString resolvedAddr() const;

private:
    [[nodiscard]] QNetworkRequest prepareRequest(const QString &urlPath, int httpMode,
                                                 bool configFallback) const;
    [[nodiscard]] ServiceEndpoint chooseTarget(bool configFallback,
                                               const ServiceEndpoint &configured) const;
    void setResolved(const ServiceEndpoint &endpoint);

    SharedEndpoint m_found; ///< by the last resolution of this object
};
