#include "tools/doctor/replyjudgement.h"

#include "service/reply/replyreading.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QStringList>

namespace {

const QString serviceMend = QStringLiteral("Ask those who run the service.");

Finding judgeHot(const QString &name, const QJsonValue &result)
{
    const int count = result.toArray().size();
    if (count == 0) {
        return toMend(name + QStringLiteral(": the list is empty"),
                      QStringLiteral("The window then shows its local questions: see "
                                     "HotRecommendation/recommendSize and channelId, and what the "
                                     "service holds for RobotId/robotId."));
    }
    return good(name + QStringLiteral(": %1 questions").arg(count));
}

Finding judgeSuggestions(const QString &name, const QJsonValue &result)
{
    if (!result.isArray()) {
        return toMend(name + QStringLiteral(": the reply holds no list"), serviceMend);
    }
    return good(name + QStringLiteral(": %1 questions").arg(result.toArray().size()));
}

Finding judgeAnswer(const QString &name, const QJsonValue &result)
{
    static const QStringList known{QStringLiteral("QA_NORMAL_RESULT"),
                                   QStringLiteral("MULTI_QA_RESULT"), QStringLiteral("NO_RESULT")};
    const QJsonObject answer = result.toObject();
    const QString type = answer.value(QLatin1String("resultType")).toString();
    if (!known.contains(type)) {
        return toMend(name + QStringLiteral(": the result is of no known type: \"%1\"").arg(type),
                      serviceMend);
    }
    if (answer.value(QLatin1String("reply")).toString().isEmpty()) {
        return toMend(name + QStringLiteral(": the reply is empty"),
                      QStringLiteral("The user is told that nothing was found. Let the service "
                                     "give every result a reply."));
    }
    return good(name + QStringLiteral(": ") + type);
}

QString named(const CallKind &kind)
{
    return QLatin1String(kind.name);
}

/// What a network error most likely means here.
QString meaning(const CallKind &kind, const QString &error)
{
    if (error == QLatin1String("AuthenticationRequiredError")
        || error == QLatin1String("ContentAccessDenied")) {
        return QStringLiteral("The service refuses the signature: compare Authorization/tenantid, "
                              "xcafirst (key) and xcasecond (secret) with what it gave you, and "
                              "this machine's clock with its own.");
    }
    if (error == QLatin1String("ContentNotFoundError")) {
        return QStringLiteral("There is no such call: correct ") + settingsName(kind.pathKey)
             + QLatin1Char('.');
    }
    if (error == QLatin1String("SslHandshakeFailedError")
        || error == QLatin1String("RemoteHostClosedError")
        || error == QLatin1String("ProtocolFailure")
        || error == QLatin1String("UnknownNetworkError")) {
        return QStringLiteral("See whether ihttpInfo/iHttpMode fits: 0 for http, 1 for https. "
                              "Otherwise the service breaks off: ask those who run it.");
    }
    return serviceMend;
}

/// The reason that a refusal gives, in its own words.
QString reason(const QJsonObject &reply)
{
    return QStringLiteral("errorCode \"%1\", %2")
        .arg(reply.value(QLatin1String("errorCode")).toString(),
             reply.value(QLatin1String("errorMsg")).toString());
}

Finding judgeDocument(const CallKind &kind, const QByteArray &bytes, const QJsonObject &reply)
{
    if (reply.value(QLatin1String("errorCode")).toString() != QLatin1String("0")) {
        return toMend(named(kind) + QStringLiteral(": the service refuses: ") + reason(reply),
                      serviceMend);
    }
    if (!bytes.contains("\"errorCode\":\"0\"")) {
        return note(named(kind) + QStringLiteral(": the reply is written with blanks"),
                    QStringLiteral("The program logs every such reply as a failure. Let the "
                                   "service write compact JSON."));
    }
    return kind.judgeResult(named(kind), reply.value(QLatin1String("result")));
}

} // namespace

const CallKind hotKind = {"hot questions", SettingsKey::HotPath, judgeHot};
const CallKind associationKind = {"suggestions", SettingsKey::AssociationPath, judgeSuggestions};
const CallKind askKind = {"an answer", SettingsKey::AskPath, judgeAnswer};

Finding judgeReply(const CallKind &kind, const QByteArray &reply, const QString &error)
{
    const QJsonObject document = parseReply(reply).document.object();
    if (!error.isEmpty()) {
        const QString said
            = document.isEmpty() ? QString() : QStringLiteral(", ") + reason(document);
        return toMend(named(kind) + QStringLiteral(": ") + error + said, meaning(kind, error));
    }
    if (reply.isEmpty()) {
        return toMend(named(kind) + QStringLiteral(": the reply is empty"), serviceMend);
    }
    if (document.isEmpty()) {
        return toMend(named(kind) + QStringLiteral(": the reply is no JSON object"),
                      QStringLiteral("Something else than the question service may answer there: "
                                     "correct IpAndPort, or ask those who run it."));
    }
    return judgeDocument(kind, reply, document);
}
