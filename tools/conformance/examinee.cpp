#include "tools/conformance/examinee.h"

#include "service/request/requesttarget.h"
#include "service/request/servicecall.h"
#include "service/request/signedrequest.h"

#include <QUrl>

namespace {

constexpr int hotLimitMs = 200000;
constexpr int askLimitMs = 800000;

} // namespace

QString nameOf(CallName call)
{
    switch (call) {
    case CallName::Hot:
        return QStringLiteral("hot");
    case CallName::Association:
        return QStringLiteral("association");
    case CallName::Ask:
        break;
    }
    return QStringLiteral("ask");
}

Examinee::Examinee(const QString &settingsFile, const QString &address, int waitMs)
    : m_settingsFile(settingsFile)
    , m_address(address)
    , m_settings(readRequestSettings(settingsFile))
    , m_waitMs(waitMs)
{
    m_server = m_settings.server;
    if (m_address.isEmpty()) {
        m_address = requestUrl(hotCall(settingsFile).httpMode, m_server, QString());
        return;
    }
    const QUrl url(m_address);
    const int usual = url.scheme() == QLatin1String("https") ? 443 : 80;
    m_server = {url.host(), QString::number(url.port(usual))};
    m_address = requestUrl(usual == 80 ? 0 : 1, m_server, QString());
}

QString Examinee::pathOf(CallName call) const
{
    switch (call) {
    case CallName::Hot:
        return hotCall(m_settingsFile).urlPath;
    case CallName::Association:
        return associationCall(m_settingsFile, QString()).urlPath;
    case CallName::Ask:
        break;
    }
    return askCall(m_settingsFile, AskFields()).urlPath;
}

QByteArray Examinee::bodyOf(CallName call) const
{
    const QString question = QStringLiteral("云桌面");
    switch (call) {
    case CallName::Hot:
        return hotCall(m_settingsFile).body;
    case CallName::Association:
        return associationCall(m_settingsFile, question).body;
    case CallName::Ask:
        break;
    }
    AskFields fields;
    fields.rawQuery = question;
    fields.source = QStringLiteral("rawquery");
    return askCall(m_settingsFile, fields).body;
}

RequestCredentials Examinee::credentials() const
{
    return freshCredentials(m_settings);
}

Letter Examinee::letterOf(CallName call, const QByteArray &body) const
{
    return signedLetter(pathOf(call), body, credentials(), m_server);
}

int Examinee::limitMs(CallName call) const
{
    // Late suggestions are waited for, to say how late they are.
    return call == CallName::Hot ? qMin(m_waitMs, hotLimitMs) : qMin(m_waitMs, askLimitMs);
}

Response Examinee::send(const Letter &letter, int limitMs) const
{
    return exchange(m_address, letter, limitMs);
}
