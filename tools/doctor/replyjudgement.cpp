#include "tools/doctor/replyjudgement.h"

#include "service/reply/answer.h"
#include "service/reply/replyreading.h"

#include <QJsonObject>

namespace {

const QString serviceMend = QStringLiteral("Ask those who run the service.");

Finding judgeHot(const QString &name, const QJsonDocument &reply)
{
    const int count = resultArray(reply).size();
    if (count == 0) {
        return toMend(name + QStringLiteral(": the list is empty"),
                      QStringLiteral("The window then shows its local questions: see "
                                     "HotRecommendation/recommendSize and channelId, and what the "
                                     "service holds for RobotId/robotId."));
    }
    return good(name + QStringLiteral(": %1 questions").arg(count));
}

Finding judgeSuggestions(const QString &name, const QJsonDocument &reply)
{
    if (!resultOf(reply).isArray()) {
        return toMend(name + QStringLiteral(": the reply holds no list"), serviceMend);
    }
    return good(name + QStringLiteral(": %1 questions").arg(resultArray(reply).size()));
}

Finding judgeAnswer(const QString &name, const QJsonDocument &reply)
{
    const Answer answer = readAnswer(reply);
    if (answer.kind == AnswerKind::Unknown) {
        return toMend(
            name + QStringLiteral(": the result is of no known type: \"%1\"").arg(answer.kindName),
            serviceMend);
    }
    if (answer.text.isEmpty()) {
        return toMend(name + QStringLiteral(": the reply is empty"),
                      QStringLiteral("The user is told that nothing was found. Let the service "
                                     "give every result a reply."));
    }
    return good(name + QStringLiteral(": ") + answer.kindName);
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
        return QStringLiteral("There is no such call: correct ") + QLatin1String(kind.pathKey)
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
QString reason(const ReplyStatus &status)
{
    return QStringLiteral("errorCode \"%1\", %2").arg(status.errorCode, status.errorMessage);
}

Finding judgeDocument(const CallKind &kind, const QByteArray &bytes, const QJsonDocument &reply)
{
    const ReplyStatus status = readStatus(reply);
    if (status.errorCode != QLatin1String("0")) {
        return toMend(named(kind) + QStringLiteral(": the service refuses: ") + reason(status),
                      serviceMend);
    }
    if (!bytes.contains("\"errorCode\":\"0\"")) {
        return note(named(kind) + QStringLiteral(": the reply is written with blanks"),
                    QStringLiteral("The program logs every such reply as a failure. Let the "
                                   "service write compact JSON."));
    }
    return kind.judgeResult(named(kind), reply);
}

} // namespace

const CallKind hotKind = {"hot questions", "url/hoturl", judgeHot};
const CallKind associationKind = {"suggestions", "url/associateurl", judgeSuggestions};
const CallKind askKind = {"an answer", "url/askquesturl", judgeAnswer};

Finding judgeReply(const CallKind &kind, const QByteArray &reply, const QString &error)
{
    const QJsonDocument document = parseReply(reply).document;
    const bool saysNothing = document.object().isEmpty();
    if (!error.isEmpty()) {
        const QString said
            = saysNothing ? QString() : QStringLiteral(", ") + reason(readStatus(document));
        return toMend(named(kind) + QStringLiteral(": ") + error + said, meaning(kind, error));
    }
    if (reply.isEmpty()) {
        return toMend(named(kind) + QStringLiteral(": the reply is empty"), serviceMend);
    }
    if (saysNothing) {
        return toMend(named(kind) + QStringLiteral(": the reply is no JSON object"),
                      QStringLiteral("Something else than the question service may answer there: "
                                     "correct IpAndPort, or ask those who run it."));
    }
    return judgeDocument(kind, reply, document);
}
