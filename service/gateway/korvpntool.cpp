#include "service/gateway/korvpntool.h"

#include "app/base/logstream.h"
#include "service/gateway/clientlibrary.h"

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace {

// The fixed arguments of the query; what they mean only the library knows.
constexpr char queryText[] = " ";
constexpr int queryMode = 1;
constexpr int queryIndex = -1;

using InitFunction = int (*)(void *, void *, void *);
using QueryFunction = const KorInfoBlock *(*)(const char *, int, int);

constexpr char initName[] = "InitKorVpnTool";
constexpr char queryName[] = "DoGetSelectedKorInfoBlock";

struct Functions
{
    InitFunction init;
    QueryFunction query;
};

struct KorVpnTool
{
    std::mutex mutex;
    std::condition_variable turnEnded;
    bool isAsked = false;               // guarded by mutex
    std::optional<Functions> functions; // of whose turn it is
};

/// The turn of one thread to ask the library. Not a mutex with a time limit: the thread sanitizer
/// of this compiler does not see how that is locked.
class Turn final
{
    Q_DISABLE_COPY_MOVE(Turn)

public:
    /// Waits for it, \a limitMs at most.
    Turn(KorVpnTool &tool, int limitMs)
        : m_tool(tool)
    {
        std::unique_lock<std::mutex> lock(m_tool.mutex);
        m_isOurs = m_tool.turnEnded.wait_for(lock, std::chrono::milliseconds(limitMs),
                                             [this] { return !m_tool.isAsked; });
        m_tool.isAsked = true;
    }

    ~Turn()
    {
        if (m_isOurs) {
            const std::lock_guard<std::mutex> lock(m_tool.mutex);
            m_tool.isAsked = false;
            m_tool.turnEnded.notify_one();
        }
    }

    [[nodiscard]] bool isOurs() const { return m_isOurs; }

private:
    KorVpnTool &m_tool;
    bool m_isOurs = false;
};

QString libraryName()
{
    return QStringLiteral("KorVpnTool");
}

KorVpnTool &korVpnTool()
{
    // Never destroyed: a worker may still use it while the statics of the process go.
    static auto *const tool = new KorVpnTool;
    return *tool;
}

std::optional<Functions> loadFrom(const QString &file)
{
    ClientLibrary library(file);
    if (!library.load()) {
        library.warnOnce();
        return std::nullopt;
    }
    const Functions found{reinterpret_cast<InitFunction>(library.resolve(initName)),
                          reinterpret_cast<QueryFunction>(library.resolve(queryName))};
    if (!found.init || !found.query) {
        library.unload(); // so that a whole one put in its place later is seen
        return std::nullopt;
    }
    return found;
}

std::optional<Functions> load()
{
    for (const QString &file : ClientLibrary::places(libraryName())) {
        if (const auto functions = loadFrom(file)) {
            return functions;
        }
    }
    return std::nullopt;
}

} // namespace

std::optional<KorGateway> selectedKorGateway(int turnLimitMs)
{
    KorVpnTool &tool = korVpnTool();
    const Turn turn(tool, turnLimitMs);
    if (!turn.isOurs()) {
        LOG_WARNING() << "KorVpnTool has not answered an earlier call, it is not asked again.";
        return std::nullopt;
    }
    if (!tool.functions) {
        tool.functions = load();
    }
    if (!tool.functions) {
        return std::nullopt;
    }
    tool.functions->init(nullptr, nullptr, nullptr);
    const KorInfoBlock *record = tool.functions->query(queryText, queryMode, queryIndex);
    if (!record) {
        return std::nullopt;
    }
    return gatewayOf(*record); // in our turn: the next call may rewrite the record
}

KorGateway gatewayOf(const KorInfoBlock &record)
{
    return {QString::fromUtf8(record.address), record.port};
}

LibraryReport examineKorVpnTool()
{
    return examineLibrary(ClientLibrary::places(libraryName()), {initName, queryName});
}
