#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>

/// One message of the guard channel, read.
struct GuardMessage
{
    QJsonObject object; ///< empty for an array
    QString error;      ///< why it is no JSON document; empty when it is one
};

/// Reads \a data: blanks around it left out, as UTF-8 up to the first NUL byte, as far as the
/// system's own encoding can hold its characters.
[[nodiscard]] GuardMessage readGuardMessage(const QByteArray &data);

/// The question that the object of a message asks, as far as the system's own encoding can hold its
/// characters and up to the first NUL character; empty when it asks none.
[[nodiscard]] QString guardQuestion(const QJsonObject &message);

/// What a message that could be read is answered with.
[[nodiscard]] QByteArray guardAcknowledgement(qint32 replyCode);
