#include "tests/service/support/testserver.h"
#include "tests/support/installation.h"
#include "tests/support/testconfig.h"

#include <QFile>
#include <QTest>

namespace {

const QString fetchedLine = QStringLiteral("Get hot issues successfully!");
const QByteArray hotReply
    = R"({"errorCode":"0","result":[{"id":1,"question":"如何修改云桌面的登录密码？"}]})";

QString base64(const char *text)
{
    return QLatin1Char('"') + QLatin1String(QByteArray(text).toBase64()) + QLatin1Char('"');
}

/// Lets the program ask \a server. Returns whether that could be written.
bool aimAt(Installation &installation, const TestServer &server)
{
    const auto set = [&installation](const char *key, const QString &value) {
        return installation.setValue(QLatin1String(key), value);
    };
    return set("IpAndPort/mserverip", QStringLiteral("127.0.0.1"))
        && set("IpAndPort/mserverhttpsport", QString::number(server.port()))
        && set("Authorization/tenantid", QLatin1String(TestConfig::tenantId))
        && set("Authorization/xcafirst", base64(TestConfig::key))
        && set("Authorization/xcasecond", base64(TestConfig::secret))
        && set("ihttpInfo/iHttpMode", QStringLiteral("0"))
        && set("url/hoturl", QStringLiteral("/hot"));
}

QByteArray filesMappedInto(const ChildProcess &copy)
{
    QFile maps(QStringLiteral("/proc/%1/maps").arg(copy.processId()));
    return maps.open(QIODevice::ReadOnly) ? maps.readAll() : QByteArray();
}

} // namespace

/// What the real program has in memory once it has fetched its hot questions by plain HTTP.
class TestLoadedLibraries : public QObject
{
    Q_OBJECT

private slots:
    void plainHttp_needsNoTlsLibraries();
    void debugLog_asksTheTlsLibraries();
    void bearerPlugins_areLeftOut();
    void waitingPicture_findsItsPlugin();

private:
    static QByteArray mappedFiles(const QString &logLevel);
};

/// The list of what is mapped into a copy that has fetched; empty when it did not get so far.
QByteArray TestLoadedLibraries::mappedFiles(const QString &logLevel)
{
    TestServer server;
    server.setReply(httpReply(hotReply));
    Installation installation(Installation::Layout::Client);
    if (!installation.isValid() || !aimAt(installation, server)
        || !installation.setValue(QStringLiteral("Log/level"), logLevel)) {
        return {};
    }
    const ChildProcess &copy = installation.start({QStringLiteral("--Type=vdi")});
    return installation.waitForLogLines(fetchedLine) ? filesMappedInto(copy) : QByteArray();
}

void TestLoadedLibraries::plainHttp_needsNoTlsLibraries()
{
    const QByteArray files = mappedFiles(QStringLiteral("INFO"));
    QVERIFY(files.contains("libQt5Network"));
    QVERIFY(!files.contains("libssl"));
    QVERIFY(!files.contains("libcrypto.so"));
}

void TestLoadedLibraries::debugLog_asksTheTlsLibraries()
{
    QVERIFY(mappedFiles(QStringLiteral("DEBUG")).contains("libssl"));
}

void TestLoadedLibraries::bearerPlugins_areLeftOut()
{
    const QByteArray files = mappedFiles(QStringLiteral("INFO"));
    QVERIFY(files.contains("libQt5Network"));
    QVERIFY(!files.contains("/bearer/"));
    QVERIFY(!files.contains("libQt5DBus"));
}

void TestLoadedLibraries::waitingPicture_findsItsPlugin()
{
    TestServer server;
    server.setReply(held(httpReply(hotReply)));
    Installation installation(Installation::Layout::Client);
    QVERIFY(installation.isValid() && aimAt(installation, server));
    const ChildProcess &copy = installation.start({QStringLiteral("--Type=vdi")});
    QTRY_VERIFY(filesMappedInto(copy).contains("/imageformats/"));
    server.release();
}

QTEST_GUILESS_MAIN(TestLoadedLibraries)

#include "tst_loadedlibraries.moc"
