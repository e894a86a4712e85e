#include "localchannel/guardmessage.h"

#include "app/base/texttools.h"

#include <QJsonDocument>

GuardMessage readGuardMessage(const QByteArray &data)
{
    QJsonParseError problem;
    const QJsonDocument document = QJsonDocument::fromJson(
        throughLocalEncoding(utf8UpToNul(data.trimmed())).toUtf8(), &problem);
    if (problem.error != QJsonParseError::NoError) {
        return {{}, problem.errorString()};
    }
    return {document.object(), {}};
}

QString guardQuestion(const QJsonObject &message)
{
    return throughLocalEncoding(message.value(QLatin1String("question")).toString());
}

QByteArray guardAcknowledgement(qint32 replyCode)
{
    const QJsonObject acknowledgement{{QStringLiteral("code"), QString::number(replyCode)}};
    return QJsonDocument(acknowledgement).toJson(QJsonDocument::Compact);
}
