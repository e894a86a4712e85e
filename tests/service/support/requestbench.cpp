#include "tests/service/support/requestbench.h"

#include "app/base/settingskeys.h"

namespace {

constexpr int plainHttp = 0;
constexpr int longMs = 20000;

} // namespace

RequestBench::RequestBench()
{
    begin(server.port());
}

RequestBench::RequestBench(quint16 configuredPort)
{
    begin(configuredPort);
}

RequestBench::RequestBench(const QSslConfiguration &tls)
    : server(tls)
{
    begin(server.port());
}

void RequestBench::begin(quint16 configuredPort)
{
    config.setServer(configuredPort);
    request.configPath = config.path();
    setResolvedEndpoint({});
}

void RequestBench::configureCalls()
{
    const auto set = [this](SettingsKey key, const char *value) {
        config.set(settingsName(key), QLatin1String(value));
    };
    set(SettingsKey::HotPath, "/hot");
    set(SettingsKey::AssociationPath, "/associate");
    set(SettingsKey::AskPath, "/ask");
    set(SettingsKey::HotChannel, "1");
    set(SettingsKey::HotCount, "20");
    set(SettingsKey::AssociationChannel, "2");
    set(SettingsKey::AssociationCount, "5");
    set(SettingsKey::AskChannel, "3");
    set(SettingsKey::AskCount, "4");
    set(SettingsKey::AskDomain, "desktop");
    set(SettingsKey::Robot, "robot");
}

int RequestBench::send(QByteArray *reply, bool configFallback)
{
    return request.SendHttpsRequest(QStringLiteral("/qa/ask"), plainHttp, longMs, reply,
                                    R"({"text":"q"})", configFallback);
}

SentRequest RequestBench::post(const char *path, int timeoutMs, int httpMode)
{
    SentRequest sent;
    sent.result = request.SendHttpsRequest(QLatin1String(path), httpMode, timeoutMs, &sent.reply,
                                           "{}", true);
    return sent;
}

QByteArray RequestBench::sentHeader(const QByteArray &name) const
{
    return server.requests().value(0).header(name);
}

ServiceEndpoint loopback(quint16 port)
{
    return {QStringLiteral("127.0.0.1"), QString::number(port)};
}
