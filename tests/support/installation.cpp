#include "tests/support/installation.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocalSocket>
#include <QThread>

#include <algorithm>

namespace {

constexpr unsigned long pollMs = 10;

QString builtProgram()
{
    return QStringLiteral(MIRAVEL_PROGRAM);
}

/// Asks \a condition again and again until it holds or the patience ends.
template <typename Condition>
bool waitFor(Condition condition)
{
    const QDeadlineTimer deadline(Installation::patienceMs);
    while (!condition()) {
        if (deadline.hasExpired()) {
            return false;
        }
        QThread::msleep(pollMs);
    }
    return true;
}

} // namespace

Installation::Installation(Layout layout)
    : m_layout(layout)
    , m_environment(QProcessEnvironment::systemEnvironment())
{
    m_valid = install();
}

Installation::~Installation() = default;

bool Installation::install()
{
    const QDir root(m_root.path());
    for (const QString &folder : {programFolder(), configFolder(), logFolder(),
                                  path(QStringLiteral("config")), path(QStringLiteral("tmp"))}) {
        if (!root.mkpath(folder)) {
            return false;
        }
    }
    // Qt wants nobody else to have access to the runtime folder.
    const QString runtime = path(QStringLiteral("run"));
    constexpr QFile::Permissions ownerOnly = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
    if (!root.mkpath(runtime) || !QFile::setPermissions(runtime, ownerOnly)) {
        return false;
    }
    if (!installLocalLibrary()) {
        return false;
    }
    m_environment.insert(QStringLiteral("TMPDIR"), path(QStringLiteral("tmp")));
    m_environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), runtime);
    return QFile::copy(builtProgram(), programPath());
}

bool Installation::installLocalLibrary() const
{
    const QDir shipped(QStringLiteral(MIRAVEL_LOCAL_LIBRARY));
    const QDir installed(programFolder() + QStringLiteral("/LocalQA"));
    const QStringList names = shipped.entryList(QDir::Files);
    return installed.mkpath(QStringLiteral("."))
        && std::all_of(names.begin(), names.end(), [&](const QString &name) {
               return QFile::copy(shipped.filePath(name), installed.filePath(name));
           });
}

bool Installation::isValid() const
{
    return m_valid;
}

QString Installation::path(const QString &relativePath) const
{
    return m_root.filePath(relativePath);
}

QString Installation::programFolder() const
{
    return path(QStringLiteral("Miravel"));
}

QString Installation::programPath() const
{
#ifdef Q_OS_WIN
    // Local names are pipes of the whole system on Windows, and come from the program's file name.
    const QString name = QFileInfo(m_root.path()).fileName() + QStringLiteral(".exe");
#else
    const QString name = QFileInfo(builtProgram()).fileName();
#endif
    return programFolder() + QLatin1Char('/') + name;
}

QString Installation::layoutFolder(const QString &name) const
{
    return m_layout == Layout::Client ? path(name) : programFolder() + QLatin1Char('/') + name;
}

QString Installation::configFolder() const
{
    return layoutFolder(QStringLiteral("config"));
}

QString Installation::logFolder() const
{
    return layoutFolder(QStringLiteral("log"));
}

QString Installation::iniPath() const
{
    return configFolder() + QStringLiteral("/Miravel.ini");
}

QString Installation::clientIniPath() const
{
    return path(QStringLiteral("config/CommonTerminal.ini"));
}

QString Installation::logPath() const
{
    return logFolder() + QStringLiteral("/Miravel.log");
}

QString Installation::backupLogPath() const
{
    return logPath() + QStringLiteral(".bk");
}

QString Installation::localName() const
{
    const QString name = QFileInfo(programPath()).fileName();
#ifdef Q_OS_WIN
    return name;
#else
    return m_environment.value(QStringLiteral("TMPDIR")) + QLatin1Char('/') + name;
#endif
}

bool Installation::setValue(const QString &key, const QString &value)
{
    setIniKey(m_ini, key, value);
    return writeIniFile(iniPath(), m_ini);
}

bool Installation::setClientValue(const QString &key, const QString &value)
{
    setIniKey(m_clientIni, key, value);
    return writeIniFile(clientIniPath(), m_clientIni);
}

bool Installation::writeIni(const QByteArray &content) const
{
    return writeFile(iniPath(), content);
}

void Installation::setIniKey(IniContent &content, const QString &key, const QString &value)
{
    const QString section = key.section(QLatin1Char('/'), 0, 0);
    content[section][key.section(QLatin1Char('/'), 1)] = value;
}

bool Installation::writeIniFile(const QString &path, const IniContent &content)
{
    QString text;
    for (auto section = content.cbegin(); section != content.cend(); ++section) {
        text += QLatin1Char('[') + section.key() + QStringLiteral("]\n");
        for (auto key = section->cbegin(); key != section->cend(); ++key) {
            text += key.key() + QLatin1Char('=') + key.value() + QLatin1Char('\n');
        }
    }
    return writeFile(path, text.toUtf8());
}

bool Installation::writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate)
        && file.write(content) == content.size() && file.flush();
}

QProcessEnvironment &Installation::environment()
{
    return m_environment;
}

void Installation::setPlatform(const QString &platform)
{
    m_platform = platform;
}

ChildProcess &Installation::start(const QStringList &arguments)
{
    QStringList all = arguments;
    if (!m_platform.isEmpty()) {
        all << QStringLiteral("-platform") << m_platform;
    }
    m_copies.push_back(std::make_unique<ChildProcess>());
    ChildProcess &copy = *m_copies.back();
    copy.setProcessEnvironment(m_environment);
    copy.start(programPath(), all);
    copy.waitForStarted(patienceMs);
    return copy;
}

bool Installation::waitUntilAnswering() const
{
    return waitFor([this] {
        QLocalSocket socket;
        socket.connectToServer(localName());
        if (!socket.waitForConnected(patienceMs)) {
            return false;
        }
        socket.write("x"); // so that the copy does not wait a second for data
        return socket.state() == QLocalSocket::UnconnectedState
            || socket.waitForDisconnected(patienceMs);
    });
}

QStringList Installation::logLines() const
{
    QFile file(logPath());
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    return QString::fromUtf8(file.readAll()).split(QStringLiteral("\r\n"), Qt::SkipEmptyParts);
}

QStringList Installation::logLinesWith(const QString &part) const
{
    return logLines().filter(part);
}

bool Installation::waitForLogLines(const QString &part, int count) const
{
    return waitFor([this, &part, count] { return logLinesWith(part).size() >= count; });
}
