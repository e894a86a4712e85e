#include "service/gateway/korvpntool.h"

#include "app/base/logstream.h"

#include <QCoreApplication>
#include <QLibrary>

#include <chrono>
#include <cstring>
#include <mutex>

namespace {

constexpr std::size_t portOffset = 0;
constexpr std::size_t addressOffset = 164;

// The fixed arguments of the query; what they mean only the library knows.
constexpr char queryName[] = " ";
constexpr int queryMode = 1;
constexpr int queryIndex = -1;

using InitFunction = int (*)(void *, void *, void *);
using QueryFunction = const void *(*)(const char *, int, int);

struct KorVpnTool
{
    std::timed_mutex mutex;
    InitFunction init = nullptr; // this and the next are guarded by mutex
    QueryFunction query = nullptr;
};

KorVpnTool &korVpnTool()
{
    // Never destroyed: a worker may still use it while the statics of the process go.
    static auto *const tool = new KorVpnTool;
    return *tool;
}

bool loadFrom(const QString &fileName, KorVpnTool &tool)
{
    QLibrary library(fileName);
    const auto init = reinterpret_cast<InitFunction>(library.resolve("InitKorVpnTool"));
    const auto query
        = reinterpret_cast<QueryFunction>(library.resolve("DoGetSelectedKorInfoBlock"));
    if (!init || !query) {
        library.unload(); // so that a whole one put in its place later is seen
        return false;
    }
    tool.init = init;
    tool.query = query;
    return true;
}

bool load(KorVpnTool &tool)
{
    const QString name = QStringLiteral("KorVpnTool");
    const QString besideProgram = QCoreApplication::applicationDirPath() + QLatin1Char('/') + name;
    return loadFrom(besideProgram, tool) || loadFrom(name, tool);
}

} // namespace

std::optional<KorGateway> selectedKorGateway(int turnLimitMs)
{
    KorVpnTool &tool = korVpnTool();
    const std::unique_lock<std::timed_mutex> lock(tool.mutex,
                                                  std::chrono::milliseconds(turnLimitMs));
    if (!lock.owns_lock()) {
        LOG_WARNING() << "KorVpnTool has not answered an earlier call, it is not asked again.";
        return std::nullopt;
    }
    if (!tool.query && !load(tool)) {
        return std::nullopt;
    }
    tool.init(nullptr, nullptr, nullptr);
    const void *record = tool.query(queryName, queryMode, queryIndex);
    if (!record) {
        return std::nullopt;
    }
    return readKorInfoBlock(record); // under the lock: the next call may rewrite the record
}

KorGateway readKorInfoBlock(const void *record)
{
    const char *bytes = static_cast<const char *>(record);
    KorGateway gateway;
    std::memcpy(&gateway.port, bytes + portOffset, sizeof gateway.port);
    gateway.address = QString::fromUtf8(bytes + addressOffset);
    return gateway;
}
