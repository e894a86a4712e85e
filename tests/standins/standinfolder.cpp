#include "tests/standins/standinfolder.h"

#include "tests/standins/processalive.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace {

constexpr char pathVariable[] = "PATH";
constexpr char folderVariable[] = "STANDIN_FOLDER";

} // namespace

StandInFolder::StandInFolder()
    : m_previousFolder(QDir::currentPath())
    , m_previousPath(qgetenv(pathVariable))
{
    const bool entered = m_folder.isValid() && QDir::setCurrent(m_folder.path());
    if (!entered) {
        qFatal("no temporary folder");
    }
    qputenv(pathVariable, QFile::encodeName(QDir::toNativeSeparators(m_folder.path())));
    qputenv(folderVariable, QFile::encodeName(m_folder.path()));
}

StandInFolder::~StandInFolder()
{
    qputenv(pathVariable, m_previousPath);
    qunsetenv(folderVariable);
    QDir::setCurrent(m_previousFolder);
}

QString StandInFolder::path() const
{
    return m_folder.path();
}

void StandInFolder::install(const QString &command) const
{
    const QString source = QStringLiteral(STANDIN_COMMAND);
    const QString suffix = QFileInfo(source).suffix();
    const QString name = suffix.isEmpty() ? command : command + QLatin1Char('.') + suffix;
    // Windows looks into the working directory before the search path.
    const QStringList places{m_folder.path(), QDir::currentPath()};
    for (const QString &place : places) {
        const QString target = QDir(place).filePath(name);
        if (!QFile::exists(target) && !QFile::copy(source, target)) {
            qFatal("cannot copy the stand-in command");
        }
    }
}

void StandInFolder::answer(const QString &key, const QByteArray &manner,
                           const QByteArray &output) const
{
    QFile file(m_folder.filePath(key + QStringLiteral(".answer")));
    const bool opened = file.open(QIODevice::WriteOnly);
    if (!opened || file.write(manner + '\n' + output) < 0) {
        qFatal("cannot write a stand-in's answer");
    }
}

QStringList StandInFolder::calls() const
{
    QStringList arguments;
    for (const QString &line : callLines()) {
        arguments.append(line.section(QLatin1Char(' '), 1));
    }
    return arguments;
}

bool StandInFolder::isAnyAlive() const
{
    const QStringList lines = callLines();
    return std::any_of(lines.begin(), lines.end(), [](const QString &line) {
        return isProcessAlive(line.section(QLatin1Char(' '), 0, 0).toLongLong());
    });
}

QStringList StandInFolder::callLines() const
{
    QFile file(m_folder.filePath(QStringLiteral("calls.log")));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        return {};
    }
    return QString::fromLocal8Bit(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}
