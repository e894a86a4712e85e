#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QNetworkReply>
#include <QPair>
#include <QSslCertificate>
#include <QString>
#include <QUrl>

/// What came back from the service.
struct CallReply
{
    int status = 0; ///< HTTP; 0 if there was none
    QByteArray body;
    QNetworkReply::NetworkError error = QNetworkReply::NoError;
    QSslCertificate peer; ///< of an HTTPS server
    bool inTime = false;  ///< false: given up and aborted

    QJsonObject json() const;
    QString errorCode() const;
    QJsonValue result() const;
};

/// The header lines of a signed request. The members can be changed before a call to spoil it.
struct SignedCall
{
    QByteArray tenant = "demo-tenant";
    QByteArray key = "demo-key";
    QByteArray secret = "demo-secret";
    QByteArray timestamp; ///< empty = now
    QByteArray nonce;     ///< empty = a new one
    QByteArray contentType = "application/json";
    QByteArray leftOut; ///< a header that is not sent

    /// Header names and values, signed.
    QList<QPair<QByteArray, QByteArray>> headers() const;
};

/// Sends `body` to `url`, signed as `call` says, and waits at most `ms` milliseconds.
CallReply sendSigned(const QUrl &url, const QByteArray &body, const SignedCall &call = {},
                     int ms = 20000, const QByteArray &method = "POST");

/// Sends a request without any header of ours.
CallReply sendPlain(const QByteArray &method, const QUrl &url, const QByteArray &body = {});

QByteArray compactJson(const QJsonObject &object);

/// The body of each call, good as it is.
QJsonObject hotBody(int recommendSize = 16);
QJsonObject associationBody(const QString &text, int recommendSize = 10);
QJsonObject askBody(const QString &question, qint64 questionId = 0, int recommendSize = 15);

extern const QString hotPath;
extern const QString associationPath;
extern const QString askPath;
