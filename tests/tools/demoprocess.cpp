#include "demoprocess.h"

#include "signedcall.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QTest>

#include <csignal>

namespace {

constexpr int startMs = 20000;
constexpr int endMs = 10000;

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

DemoProcess::DemoProcess()
{
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
}

DemoProcess::~DemoProcess()
{
    stop();
}

bool DemoProcess::start(const QStringList &more)
{
    const QString ports = m_folder.filePath(QStringLiteral("ports.json"));
    QFile::remove(ports);
    QStringList arguments
        = {QStringLiteral("--knowledge"),  knowledgeFile(),
           QStringLiteral("--https-port"), QStringLiteral("0"),
           QStringLiteral("--ports-file"), ports,
           QStringLiteral("--log"),        m_folder.filePath(QStringLiteral("requests.log"))};
    m_process.start(QStringLiteral(DEMOSERVICE_PROGRAM), arguments + more);
    const bool listening = QTest::qWaitFor(
        [&] { return QFile::exists(ports) || m_process.state() == QProcess::NotRunning; }, startMs);
    const QJsonObject object = QJsonDocument::fromJson(contentOf(ports)).object();
    m_httpPort = object.value(QLatin1String("http")).toInt();
    m_httpsPort = object.value(QLatin1String("https")).toInt();
    return listening && m_httpPort > 0 && m_httpsPort > 0;
}

int DemoProcess::stop()
{
    if (m_process.state() == QProcess::NotRunning) {
        return -1;
    }
    m_process.terminate();
    const bool ended = m_process.waitForFinished(endMs);
    if (!ended) {
        m_process.kill();
        m_process.waitForFinished(endMs);
    }
    return ended && m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
}

bool DemoProcess::isRunning() const
{
    return m_process.state() == QProcess::Running;
}

int DemoProcess::threadCount() const
{
    const QDir tasks(QStringLiteral("/proc/%1/task").arg(m_process.processId()));
    return tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
}

QUrl DemoProcess::httpUrl(const QString &path) const
{
    return QUrl(QStringLiteral("http://127.0.0.1:%1").arg(m_httpPort) + path);
}

QUrl DemoProcess::httpsUrl(const QString &path) const
{
    return QUrl(QStringLiteral("https://127.0.0.1:%1").arg(m_httpsPort) + path);
}

QStringList DemoProcess::logLines() const
{
    const QByteArray log = contentOf(m_folder.filePath(QStringLiteral("requests.log")));
    return QString::fromUtf8(log).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

QString DemoProcess::lastLogLine() const
{
    const QStringList lines = logLines();
    return lines.isEmpty() ? QString() : lines.last();
}

QByteArray DemoProcess::setFault(const QJsonObject &fault)
{
    const CallReply reply
        = sendPlain("PUT", httpUrl(QStringLiteral("/demo/faults")), compactJson(fault));
    return reply.status == 200 ? QByteArray() : "refused: " + reply.body;
}

QByteArray DemoProcess::history()
{
    return sendPlain("GET", httpUrl(QStringLiteral("/demo/requests"))).body;
}

int DemoProcess::runToEnd(const QStringList &arguments, QString &error)
{
    QProcess process;
    process.start(QStringLiteral(DEMOSERVICE_PROGRAM), arguments);
    const bool ended = process.waitForFinished(endMs);
    error = QString::fromUtf8(process.readAllStandardError());
    if (!ended) {
        process.kill();
        process.waitForFinished(endMs);
        return -1;
    }
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

QString DemoProcess::knowledgeFile()
{
    return QStringLiteral(DEMOSERVICE_FOLDER "/knowledge.json");
}
