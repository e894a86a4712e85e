#include "bench/rows.h"
#include "bench/timing.h"
#include "tests/service/support/testserver.h"
#include "tests/support/installation.h"
#include "tests/support/testconfig.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QThread>

#include <functional>
#include <vector>

namespace {

constexpr int startRounds = 40;
constexpr int memoryRounds = 5;
constexpr int settleMs = 500; ///< a process that used no processor time for so long is idle
constexpr int patienceMs = 30000;

/// What the process \a pid holds in memory, in KiB.
double residentKib(qint64 pid)
{
    QFile file(QStringLiteral("/proc/%1/statm").arg(pid));
    file.open(QIODevice::ReadOnly);
    constexpr double pageKib = 4;
    return file.readAll().split(' ').value(1).toDouble() * pageKib;
}

/// What the threads of a process have done so far.
struct Activity
{
    qint64 ticks = 0;  ///< of processor time
    bool waits = true; ///< none of them is running or about to

    [[nodiscard]] bool isRestSince(const Activity &earlier) const
    {
        return waits && earlier.waits && ticks == earlier.ticks;
    }
};

Activity activityOf(qint64 pid)
{
    Activity activity;
    const QDir threads(QStringLiteral("/proc/%1/task").arg(pid));
    const QStringList names = threads.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &thread : names) {
        QFile file(threads.filePath(thread + QStringLiteral("/stat")));
        file.open(QIODevice::ReadOnly);
        const QByteArray line = file.readAll();
        // Fields are counted from the state on; the name before it may hold blanks.
        const QList<QByteArray> fields = line.mid(line.lastIndexOf(')') + 2).split(' ');
        activity.waits = activity.waits && fields.value(0) == "S";
        activity.ticks += fields.value(11).toLongLong() + fields.value(12).toLongLong();
    }
    return activity;
}

void waitUntilIdle(qint64 pid)
{
    const QDeadlineTimer deadline(patienceMs);
    Activity before = activityOf(pid);
    for (bool rests = false; !rests && !deadline.hasExpired();) {
        QThread::msleep(settleMs);
        const Activity now = activityOf(pid);
        rests = now.isRestSince(before);
        before = now;
    }
}

/// What is preloaded into a program that says when it has painted its window.
QProcessEnvironment watched(QProcessEnvironment environment)
{
    environment.insert(QStringLiteral("LD_PRELOAD"), QStringLiteral(MIRAVEL_FIRST_PAINT));
    return environment;
}

/// Waits for the first picture; gives the processor time until then, in microseconds.
double waitForPaint(ChildProcess &process)
{
    const QStringList words = process.nextLine(patienceMs).split(QLatin1Char(' '));
    if (words.value(0) != QLatin1String("painted")) {
        qFatal("The window never appeared");
    }
    return words.value(1).toDouble() / 1000;
}

/// An installation that starts as in everyday use: logged in, the service there.
class EverydayInstallation
{
public:
    EverydayInstallation()
        : m_installation(Installation::Layout::Client)
    {
        m_server.setReply(httpReply(hotReply()));
        const auto base64 = [](const char *text) {
            return QLatin1Char('"') + QLatin1String(QByteArray(text).toBase64()) + QLatin1Char('"');
        };
        set("IpAndPort/mserverip", QStringLiteral("127.0.0.1"));
        set("IpAndPort/mserverhttpsport", QString::number(m_server.port()));
        set("Authorization/tenantid", QLatin1String(TestConfig::tenantId));
        set("Authorization/xcafirst", base64(TestConfig::key));
        set("Authorization/xcasecond", base64(TestConfig::secret));
        set("ihttpInfo/iHttpMode", QStringLiteral("0"));
        set("url/hoturl", QStringLiteral("/hot"));
        m_installation.setClientValue(QStringLiteral("LoginMode/loginstate"), QStringLiteral("1"));
        m_installation.environment() = watched(m_installation.environment());
    }

    ChildProcess &start()
    {
        // The copy before this one was killed, and an everyday start does not follow a crash.
        QFile::remove(m_installation.localName());
        return m_installation.start({QStringLiteral("--Type=vdi")});
    }

private:
    void set(const char *key, const QString &value)
    {
        m_installation.setValue(QLatin1String(key), value);
    }

    static QByteArray hotReply()
    {
        QByteArray questions;
        for (int i = 0; i < 10; ++i) {
            questions += (i > 0 ? "," : "") + QByteArray(R"({"id":)") + QByteArray::number(i + 1)
                       + R"(,"question":"如何修改云桌面的登录密码？"})";
        }
        return R"({"errorCode":"0","result":[)" + questions + "]}";
    }

    TestServer m_server;
    Installation m_installation;
};

void startBare(ChildProcess &process)
{
    process.setProcessEnvironment(watched(QProcessEnvironment::systemEnvironment()));
    process.start(QStringLiteral(MIRAVEL_BARE_WINDOW),
                  {QStringLiteral("-platform"), QStringLiteral("offscreen")});
    process.waitForStarted();
}

/// What starts cost, in microseconds.
struct Starts
{
    std::vector<double> times;
    std::vector<double> processorTimes;

    /// Measures one start, which \a start makes.
    void add(const std::function<ChildProcess &()> &start)
    {
        ChildProcess *process = nullptr;
        double processorTime = 0;
        times.push_back(microseconds([&] {
            process = &start();
            processorTime = waitForPaint(*process);
        }));
        processorTimes.push_back(processorTime);
        process->crash();
    }
};

double idleMemory(ChildProcess &process)
{
    waitForPaint(process);
    waitUntilIdle(process.processId());
    const double memory = residentKib(process.processId());
    process.crash();
    return memory;
}

double bareIdleMemory()
{
    ChildProcess process;
    startBare(process);
    return idleMemory(process);
}

Row row(const char *id, const char *what, const char *unit, double ours, double bare, double atMost,
        double heldTo = 0)
{
    return {QLatin1String(id),
            QLatin1String(what),
            QStringLiteral("a bare 920 x 640 window"),
            QLatin1String(unit),
            ours,
            bare,
            atMost,
            heldTo};
}

} // namespace

Rows measureStart()
{
    EverydayInstallation installation;
    Starts ours;
    Starts bare;
    // Both start in turn, so that whatever else the machine does weighs on both. The least is the
    // start that was disturbed least: who shares a processor's caches takes processor time as well.
    for (int round = 0; round < startRounds; ++round) {
        ours.add([&installation]() -> ChildProcess & { return installation.start(); });
        ChildProcess process;
        bare.add([&process]() -> ChildProcess & {
            startBare(process);
            return process;
        });
    }
    const TwoCosts memory = compare(
        memoryRounds, [&installation] { return idleMemory(installation.start()); }, bareIdleMemory);
    constexpr double ms = 1000;
    constexpr double mib = 1024;
    return {row("start", "start to first paint, least", "ms", least(ours.times) / ms,
                least(bare.times) / ms, 1.35, 1.9),
            row("start-processor", "processor time until then, all threads, least", "ms",
                least(ours.processorTimes) / ms, least(bare.processorTimes) / ms, 1.5, 1.9),
            row("idle-memory", "memory when idle", "MiB", memory.first / mib, memory.second / mib,
                1.35, 1.52)};
}
