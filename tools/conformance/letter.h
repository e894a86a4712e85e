#pragma once

#include "service/request/requestsettings.h"
#include "service/request/requestsigning.h"

#include <QByteArray>
#include <QPair>
#include <QString>
#include <QVector>

/// One request as it goes out.
struct Letter
{
    QByteArray verb = "POST";
    QString path;
    QVector<QPair<QByteArray, QByteArray>> headers;
    QByteArray body;
};

/// A letter with the seven headers that the service checks, signed with \a credentials; the secret
/// is in none of them. \a server is what "X-Ap-sHost" names.
[[nodiscard]] Letter signedLetter(const QString &path, const QByteArray &body,
                                  const RequestCredentials &credentials,
                                  const ServiceEndpoint &server);

void setHeader(Letter &letter, const QByteArray &name, const QByteArray &value);
void removeHeader(Letter &letter, const QByteArray &name);

/// The value of the header \a name; empty when there is none.
[[nodiscard]] QByteArray headerOf(const Letter &letter, const QByteArray &name);
