#include "service/request/idpinterface.h"

#include "app/base/logstream.h"
#include "service/reply/replyreading.h"
#include "service/request/servicecall.h"

namespace {

struct CallTexts
{
    const char *group; ///< first word of the parse warning
    const char *failure;
};

constexpr CallTexts hotTexts = {"HotRecommendation", "Failed to get hot questions! ret:"};
constexpr CallTexts associationTexts
    = {"ProblemAssociation", "Failed to get association questions! ret:"};
constexpr CallTexts askTexts
    = {"QuestAndAnw", "Failed to get question reply (Ask_And_Answer)! ret:"};

QJsonDocument readReply(int result, const QByteArray &buffer, const CallTexts &texts)
{
    const ParsedReply reply = parseReply(buffer);
    if (result != 0) {
        LOG_WARNING() << texts.failure << result << ".";
    }
    if (reply.error != QJsonParseError::NoError) {
        LOG_WARNING() << texts.group << "---QJsonDocument::fromJson error code"
                      << static_cast<int>(reply.error);
    }
    return reply.document;
}

} // namespace

QJsonArray IdpInterface::hot_questions()
{
    request.getUseful_IpPort();
    const ServiceCall call = hotCall(request.configPath);
    QByteArray buffer;
    const int result = request.SendHttpsRequest(call.urlPath, call.httpMode, hotTimeoutMs, &buffer,
                                                call.body, false);
    return resultArray(readReply(result, buffer, hotTexts));
}

QJsonArray IdpInterface::association_questions(QString text)
{
    const ServiceCall call = associationCall(request.configPath, text);
    QByteArray buffer;
    const int result = request.SendHttpsRequest(call.urlPath, call.httpMode, associationTimeoutMs,
                                                &buffer, call.body, true);
    return resultArray(readReply(result, buffer, associationTexts));
}

QJsonDocument IdpInterface::Ask_And_Answer(QString rawQuery, QString accountId, QString source,
                                           QString originalQuestion, qint64 questionId)
{
    request.getUseful_IpPort();
    LOG_INFO() << "Ask_And_Answer question:" << rawQuery;
    const ServiceCall call = askCall(
        request.configPath, {rawQuery, QString(), accountId, source, originalQuestion, questionId});
    QByteArray buffer;
    const int result = request.SendHttpsRequest(call.urlPath, call.httpMode, askTimeoutMs, &buffer,
                                                call.body, false);
    return readReply(result, buffer, askTexts);
}
