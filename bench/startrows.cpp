#include "bench/rows.h"
#include "bench/timing.h"
#include "tests/service/support/testconfig.h"
#include "tests/service/support/testserver.h"
#include "tests/support/installation.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QThread>

namespace {

constexpr int rounds = 10;
constexpr int settleMs = 500; ///< a process that used no processor time for so long is idle
constexpr int patienceMs = 30000;

const QString paintedMark = QStringLiteral("painted");

/// The bytes of the process \a pid that are in memory, in KiB.
double residentKib(qint64 pid)
{
    QFile file(QStringLiteral("/proc/%1/statm").arg(pid));
    file.open(QIODevice::ReadOnly);
    constexpr double pageKib = 4;
    return file.readAll().split(' ').value(1).toDouble() * pageKib;
}

/// The processor time that the process \a pid has used, in ticks.
qint64 usedTicks(qint64 pid)
{
    QFile file(QStringLiteral("/proc/%1/stat").arg(pid));
    file.open(QIODevice::ReadOnly);
    const QList<QByteArray> fields = file.readAll().split(' ');
    return fields.value(13).toLongLong() + fields.value(14).toLongLong();
}

void waitUntilIdle(qint64 pid)
{
    const QDeadlineTimer deadline(patienceMs);
    qint64 before = -1;
    for (qint64 now = usedTicks(pid); now != before && !deadline.hasExpired();
         now = usedTicks(pid)) {
        before = now;
        QThread::msleep(settleMs);
    }
}

/// What is preloaded into a program that says when it has painted its window.
QProcessEnvironment watched(QProcessEnvironment environment)
{
    environment.insert(QStringLiteral("LD_PRELOAD"), QStringLiteral(MIRAVEL_FIRST_PAINT));
    return environment;
}

void waitForPaint(ChildProcess &process)
{
    if (process.nextLine(patienceMs) != paintedMark) {
        qFatal("The window never appeared");
    }
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

    ChildProcess &start() { return m_installation.start({QStringLiteral("--Type=vdi")}); }

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

double ourStart(EverydayInstallation &installation)
{
    ChildProcess *process = nullptr;
    const double cost = microseconds([&] {
        process = &installation.start();
        waitForPaint(*process);
    });
    process->crash();
    return cost;
}

double bareStart()
{
    ChildProcess process;
    const double cost = microseconds([&process] {
        startBare(process);
        waitForPaint(process);
    });
    process.crash();
    return cost;
}

double idleMemory(ChildProcess &process)
{
    waitForPaint(process);
    waitUntilIdle(process.processId());
    const double memory = residentKib(process.processId());
    process.crash();
    return memory;
}

} // namespace

Rows measureStart()
{
    EverydayInstallation installation;
    const TwoCosts starts = compare(
        rounds, [&installation] { return ourStart(installation); }, bareStart);
    ChildProcess bare;
    startBare(bare);
    const double bareMemory = idleMemory(bare);
    const double ourMemory = idleMemory(installation.start());
    return {
        {QStringLiteral("start"), QStringLiteral("start to first paint"),
         QStringLiteral("a bare 920 x 640 window"), QStringLiteral("ms"), starts.first / 1000,
         starts.second / 1000, 1.35},
        {QStringLiteral("idle-memory"), QStringLiteral("memory when idle"),
         QStringLiteral("the same bare window"), QStringLiteral("MiB"), ourMemory / 1024,
         bareMemory / 1024, 1.5},
    };
}
