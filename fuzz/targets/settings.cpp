#include "app/base/settingsfile.h"
#include "app/base/settingskeys.h"
#include "app/base/texttools.h"
#include "fuzz/support/check.h"
#include "fuzz/support/parts.h"
#include "fuzz/support/scratchfolder.h"
#include "fuzz/support/target.h"
#include "service/request/requesttarget.h"
#include "service/request/servicecall.h"
#include "service/request/signedrequest.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QUrl>

#include <algorithm>

namespace {

/// Whether a header can hold \a text.
bool isPrintable(const QByteArray &text)
{
    return std::none_of(text.begin(), text.end(), [](char character) {
        const auto code = static_cast<uchar>(character);
        return (code < 0x20 && code != 0x09) || code == 0x7f;
    });
}

/// The body of a call, which must be an object with the settings of \a group and \a count members.
QJsonObject checkBody(const SettingsFile &settings, const ServiceCall &call, const char *group,
                      int count)
{
    const auto value = [&settings, group](const char *name) {
        return settings.value(QLatin1String(group) + QLatin1Char('/') + QLatin1String(name));
    };
    QJsonParseError problem;
    QJsonObject body = QJsonDocument::fromJson(call.body, &problem).object();
    check(problem.error == QJsonParseError::NoError, "a body is JSON");
    check(body.size() == count, "a body has the members of its call");
    check(body.value(QLatin1String("channelId")).toInt(-1) == value("channelId").toInt()
              || value("channelId").toInt() == -1,
          "the channel is that of the settings");
    check(body.value(QLatin1String("recommendSize")).toInt(-1) == value("recommendSize").toInt()
              || value("recommendSize").toInt() == -1,
          "so is the number of questions");
    const QString robot = settings.value(QStringLiteral("RobotId/robotId")).toString();
    check(body.value(QLatin1String("robotId")).toString() == wholeCharacters(robot),
          "so is the robot");
    check(QString::fromUtf8(call.body).toUtf8() == call.body, "a body is UTF-8");
    return body;
}

void checkHeaders(const QString &path)
{
    const RequestSettings settings = readRequestSettings(path);
    const RequestCredentials credentials = freshCredentials(settings);
    QNetworkRequest request(
        QUrl(requestUrl(0, settings.server, QStringLiteral("/")), QUrl::TolerantMode));
    setSignedHeaders(request, credentials, settings.server);
    check(request.rawHeaderList().size() == 7, "every header is there");
    check(request.rawHeader("tenantId") == settings.tenantId.toUtf8()
              || !isPrintable(settings.tenantId.toUtf8()),
          "the tenant is sent as is");
    const QByteArray signature = request.rawHeader("x-ca-signature");
    check(signature.size() == 64 && QByteArray::fromHex(signature).toHex() == signature,
          "a signature has 64 small digits");
    for (const QByteArray &name : request.rawHeaderList()) {
        const QByteArray value = request.rawHeader(name);
        check(isPrintable(value), "no header ends early");
        check(settings.secret.size() < 16 || name == "tenantId" || name == "X-Ap-sHost"
                  || name == "x-ca-key" || !value.contains(settings.secret.toUtf8()),
              "the secret is not sent");
    }
    const ServiceEndpoint server = readConfiguredServer(path);
    check(server.strAddr == settings.server.strAddr && server.strPort == settings.server.strPort,
          "the server is the same however it is read");
}

} // namespace

/// "Miravel.ini" as somebody may have written it, up to the headers and bodies of requests. The
/// second part of the input is the question.
void runTarget(const QByteArray &input)
{
    static ScratchFolder folder;
    const QByteArrayList parts = partsOf(input, 2);
    const QString path = folder.writeSettings(parts.first());
    const QString question = QString::fromUtf8(parts.at(1));
    checkHeaders(path);

    const SettingsFile settings(path);
    const ServiceCall hot = hotCall(path);
    checkBody(settings, hot, "HotRecommendation", 3);
    const ServiceCall association = associationCall(path, question);
    const QJsonObject typed = checkBody(settings, association, "ProblemAssociation", 4);
    check(typed.value(QLatin1String("text")).toString() == question, "what is typed is sent");

    const qint64 id = static_cast<qint64>(qHash(question)) << 31 | parts.first().size();
    const ServiceCall ask
        = askCall(path, {question, QString(), question, QStringLiteral("rawquery"), question, id});
    const QJsonObject body = checkBody(settings, ask, "QuestAndAnw", 9);
    check(body.value(QLatin1String("rawQuery")).toString() == question, "the question is sent");
    check(ask.body.contains("\"questionId\":" + QByteArray::number(id) + ','),
          "the id is sent whole");
    check(ask.httpMode == settings.value(settingsName(SettingsKey::HttpMode)).toInt(),
          "the mode is that of the settings");
    const QUrl url(requestUrl(ask.httpMode, readConfiguredServer(path), ask.urlPath));
    check(!url.isValid() || url.scheme() == QLatin1String(ask.httpMode == 0 ? "http" : "https"),
          "a request is http or https");
}
