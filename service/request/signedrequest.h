#pragma once

#include "service/request/requestsettings.h"
#include "service/request/requestsigning.h"

#include <QNetworkRequest>

/// The credentials of one request made now: those of \a settings with a fresh nonce (a random UUID
/// in braces, RFC 4122 version 4) and the current time. Any thread.
[[nodiscard]] RequestCredentials freshCredentials(const RequestSettings &settings);

/// Sets the headers of a signed request on \a request, in the order in which they go out.
/// \a configured is the server that "X-Ap-sHost" names, wherever the request goes to.
void setSignedHeaders(QNetworkRequest &request, const RequestCredentials &credentials,
                      const ServiceEndpoint &configured);

/// Makes \a request use TLS 1.2 exactly and not check the server's certificate.
void setTlsConfiguration(QNetworkRequest &request);

/// Keeps Qt from doing more for \a request than to post it: no redirect is followed, nobody is
/// logged in anywhere, no cookie is kept, and a compressed reply comes as it is sent.
void doNothingByItself(QNetworkRequest &request);
