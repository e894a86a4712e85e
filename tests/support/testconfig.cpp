#include "tests/support/testconfig.h"

#include "app/base/apppaths.h"

#include <QDir>
#include <QFile>

namespace {

bool isHexDigit(QChar character)
{
    return QString::fromLatin1("0123456789abcdefABCDEF").contains(character);
}

// In quotes, so that commas and semicolons stand for themselves.
QString iniText(const QString &value)
{
    QString text;
    bool afterEscape = false; // a hexadecimal digit would be taken for a part of the escape
    for (const QChar character : value) {
        if (character.unicode() > 0x7e || character.unicode() < 0x20
            || (afterEscape && isHexDigit(character))) {
            text += QStringLiteral("\\x%1").arg(character.unicode(), 0, 16);
            afterEscape = true;
            continue;
        }
        if (character == QLatin1Char('"') || character == QLatin1Char('\\')) {
            text += QLatin1Char('\\');
        }
        text += character;
        afterEscape = false;
    }
    return QLatin1Char('"') + text + QLatin1Char('"');
}

QString base64(const char *text)
{
    return QString::fromLatin1(QByteArray(text).toBase64());
}

} // namespace

const char TestConfig::tenantId[] = "tenant-1";
const char TestConfig::key[] = "the key";
const char TestConfig::secret[] = "the secret";

TestConfig::TestConfig()
{
    QDir(root()).mkdir(QStringLiteral("config"));
}

TestConfig::~TestConfig()
{
    if (m_entered) {
        QDir::setCurrent(QDir::rootPath()); // a folder in use cannot be removed everywhere
    }
}

void TestConfig::enter(const QString &callerType)
{
    initAppPaths(callerType);
    const bool shortcut = installationLayout() == InstallationLayout::Shortcut;
    const QDir folder(root());
    const QString program = shortcut ? root() : folder.filePath(QStringLiteral("Miravel"));
    if (!folder.mkpath(program) || !QDir::setCurrent(program)) {
        qFatal("The test's installation cannot be entered.");
    }
    m_entered = true;
}

void TestConfig::set(const QString &name, const QString &value)
{
    m_values.insert(name, value);
    write();
}

void TestConfig::setServer(quint16 port)
{
    m_values.insert(QStringLiteral("IpAndPort/mserverip"), QStringLiteral("127.0.0.1"));
    m_values.insert(QStringLiteral("IpAndPort/mserverhttpsport"), QString::number(port));
    m_values.insert(QStringLiteral("Authorization/tenantid"), QString::fromLatin1(tenantId));
    m_values.insert(QStringLiteral("Authorization/xcafirst"), base64(key));
    m_values.insert(QStringLiteral("Authorization/xcasecond"), base64(secret));
    write();
}

void TestConfig::setBytes(const QByteArray &bytes) const
{
    QFile file(path());
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        qFatal("The test's settings file cannot be written.");
    }
}

void TestConfig::setFolderInPlace() const
{
    QFile::remove(path());
    QDir().mkpath(path());
}

QString TestConfig::path() const
{
    return root() + QStringLiteral("/config/Miravel.ini");
}

void TestConfig::write()
{
    // Qt takes a file of the same size and time for unchanged: each one is longer.
    QByteArray bytes = ";" + QByteArray(1000 * ++m_writes, '.') + '\n';
    QString group;
    for (auto value = m_values.cbegin(); value != m_values.cend(); ++value) {
        const int slash = value.key().indexOf(QLatin1Char('/'));
        if (group != value.key().left(slash)) {
            group = value.key().left(slash);
            bytes += '[' + group.toLatin1() + "]\n";
        }
        bytes += value.key().mid(slash + 1).toLatin1() + '=' + iniText(value.value()).toLatin1()
               + '\n';
    }
    setBytes(bytes);
}
