#pragma once

#include "service/request/idpinterface.h"
#include "tests/service/support/testserver.h"
#include "tests/support/logcapture.h"
#include "tests/support/testconfig.h"

/// What became of a request.
struct SentRequest
{
    int result = 1;
    QByteArray reply = "before"; ///< as long as nothing else is put in its place
};

/// A sender of requests on settings, and with a server, of its own: the process-wide endpoint is
/// not resolved yet, the log is caught from the beginning. One at a time.
struct RequestBench final
{
    /// The settings name the server.
    RequestBench();

    /// The settings name \a configuredPort of this machine; the server is there all the same.
    explicit RequestBench(quint16 configuredPort);

    /// The settings name the server, which speaks HTTPS as \a tls has it.
    explicit RequestBench(const QSslConfiguration &tls);

    /// Writes the settings of the three calls: the paths "/hot", "/associate" and "/ask", the
    /// channels 1, 2 and 3, the numbers of questions 20, 5 and 4, the robot "robot" and the domain
    /// "desktop".
    void configureCalls();

    /// Posts a small body to "/qa/ask" over plain HTTP and waits for \a reply longer than it takes.
    int send(QByteArray *reply, bool configFallback = true);

    /// Posts "{}" to \a path, with the configured server for an endpoint that is not resolved, and
    /// waits at most \a timeoutMs milliseconds.
    SentRequest post(const char *path, int timeoutMs, int httpMode = 0);

    /// The header \a name of the first request.
    [[nodiscard]] QByteArray sentHeader(const QByteArray &name) const;

    TestServer server;
    TestConfig config;
    IdpInterface service;
    httpsRequest &request = service.request;
    LogCapture log;

private:
    void begin(quint16 configuredPort);
};

/// The endpoint at \a port of this machine.
[[nodiscard]] ServiceEndpoint loopback(quint16 port);
