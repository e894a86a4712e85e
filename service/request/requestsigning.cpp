#include "service/request/requestsigning.h"

#include "app/base/texttools.h"

#include <QCryptographicHash>
#include <QMessageAuthenticationCode>

QString decodedCredential(const QString &stored)
{
    const QByteArray decoded = QByteArray::fromBase64(stored.toUtf8());
    return decoded.isNull() ? QString() : utf8UpToNul(decoded);
}

QString stringToSign(const RequestCredentials &credentials)
{
    // Five calls, not one with five values: the service's own text is made this way, and the two
    // differ when a value holds a place marker.
    return QStringLiteral("tenantId=%1&x-ca-key=%2&x-ca-nonce=%3&x-ca-secret=%4&x-ca-timestamp=%5")
        .arg(credentials.tenantId)
        .arg(credentials.key)
        .arg(credentials.nonce)
        .arg(credentials.secret)
        .arg(credentials.timestamp);
}

QByteArray requestSignature(const QString &message, const QString &secret)
{
    const QByteArray code = QMessageAuthenticationCode::hash(message.toLatin1(), secret.toLatin1(),
                                                             QCryptographicHash::Sha256);
    return code.toHex().toPercentEncoding();
}
