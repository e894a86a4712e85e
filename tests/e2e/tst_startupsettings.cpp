#include "tests/support/installation.h"
#include "tests/support/unreadablefile.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

namespace {

using Layout = Installation::Layout;

const QString callerLine = QStringLiteral("Caller Type: ");
const QString vdi = QStringLiteral("--Type=vdi");

} // namespace

/// The real program on settings and folders of every kind.
class TestStartupSettings : public QObject
{
    Q_OBJECT

private slots:
    void logLevel_decidesAboutTheStartupLines_data();
    void logLevel_decidesAboutTheStartupLines();
    void missingSettingsFile_isNoError();
    void unusableSettingsFile_isNoError_data();
    void unusableSettingsFile_isNoError();
    void unreadableSettingsFile_isNoError();
    void settings_areNeverWritten();
    void missingLogFolder_isNotCreated();
};

void TestStartupSettings::logLevel_decidesAboutTheStartupLines_data()
{
    QTest::addColumn<QString>("level");
    QTest::addColumn<int>("lines");
    QTest::newRow("DEBUG") << QStringLiteral("DEBUG") << 2;
    QTest::newRow("small letters") << QStringLiteral("info") << 2;
    QTest::newRow("quoted") << QStringLiteral("\"Info\"") << 2;
    QTest::newRow("WARN") << QStringLiteral("WARN") << 0;
    QTest::newRow("WARNING is no name") << QStringLiteral("WARNING") << 0;
    QTest::newRow("list") << QStringLiteral("INFO,DEBUG") << 0;
    QTest::newRow("empty") << QString() << 0;
}

void TestStartupSettings::logLevel_decidesAboutTheStartupLines()
{
    QFETCH(QString, level);
    QFETCH(int, lines);
    Installation installation(Layout::Client);
    QVERIFY(installation.isValid());
    QVERIFY(installation.setValue(QStringLiteral("Log/level"), level));
    QVERIFY(installation.start({QStringLiteral("--Type=abc")}).endsWith(0));
    QCOMPARE(installation.logLines().size(), lines);
}

void TestStartupSettings::missingSettingsFile_isNoError()
{
    for (const Layout layout : {Layout::Client, Layout::Shortcut}) {
        Installation installation(layout);
        QVERIFY(installation.isValid());
        QVERIFY(QDir(installation.configFolder()).removeRecursively());
        installation.start(layout == Layout::Client ? QStringList(vdi) : QStringList());
        QVERIFY(installation.waitUntilAnswering());
        QCOMPARE(installation.logLinesWith(callerLine), QStringList());
        QVERIFY(!QFile::exists(installation.configFolder()));
    }
}

void TestStartupSettings::unusableSettingsFile_isNoError_data()
{
    QTest::addColumn<QByteArray>("content");
    QByteArray binary;
    constexpr int byteValues = 256;
    for (int i = 0; i < byteValues * byteValues; ++i) {
        binary.append(static_cast<char>(i * 31 + i / byteValues));
    }
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("binary") << binary;
    QTest::newRow("no section") << QByteArray("level=INFO\n");
    QTest::newRow("only NUL") << QByteArray(1000, '\0');
}

void TestStartupSettings::unusableSettingsFile_isNoError()
{
    QFETCH(QByteArray, content);
    Installation installation(Layout::Client);
    QVERIFY(installation.isValid());
    QVERIFY(installation.writeIni(content));
    ChildProcess &program = installation.start({vdi});
    QVERIFY(installation.waitUntilAnswering());
    QVERIFY(program.isRunning());
    QCOMPARE(installation.logLinesWith(callerLine), QStringList());
}

void TestStartupSettings::unreadableSettingsFile_isNoError()
{
    Installation folder(Layout::Client);
    QVERIFY(folder.isValid());
    QVERIFY(QDir().mkpath(folder.iniPath()));
    folder.start({vdi});
    QVERIFY(folder.waitUntilAnswering());
    QCOMPARE(folder.logLinesWith(callerLine), QStringList());

    Installation locked(Layout::Client);
    QVERIFY(locked.isValid());
    QVERIFY(locked.setValue(QStringLiteral("Log/level"), QStringLiteral("INFO")));
#ifdef Q_OS_WIN
    const UnreadableFile held(locked.iniPath());
    QVERIFY(held.whyNot() == nullptr);
    const bool readable = false;
#else
    QVERIFY(QFile::setPermissions(locked.iniPath(), {}));
    const bool readable = QFile(locked.iniPath()).open(QIODevice::ReadOnly);
#endif
    locked.start({vdi});
    QVERIFY(locked.waitUntilAnswering());
    // A user whom permissions do not bind reads it all the same.
    QCOMPARE(locked.logLinesWith(callerLine).size(), readable ? 1 : 0);
}

void TestStartupSettings::settings_areNeverWritten()
{
    Installation installation(Layout::Client);
    QVERIFY(installation.isValid());
    const QByteArray content = "; kept as it is\n[Log]\nlevel = debug \n[Odd key]\n x=\"1\n";
    QVERIFY(installation.writeIni(content));
    const QStringList files = QDir(installation.configFolder()).entryList(QDir::Files);
    const QDateTime time = QFileInfo(installation.iniPath()).lastModified();
    installation.start({vdi});
    QVERIFY(installation.waitUntilAnswering());
    QVERIFY(installation.start({QStringLiteral("--Type=abc")}).endsWith(0));
    QFile file(installation.iniPath());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), content);
    QCOMPARE(QFileInfo(installation.iniPath()).lastModified(), time);
    QCOMPARE(QDir(installation.configFolder()).entryList(QDir::Files), files);
}

void TestStartupSettings::missingLogFolder_isNotCreated()
{
    Installation installation(Layout::Client);
    QVERIFY(installation.isValid());
    QVERIFY(installation.setValue(QStringLiteral("Log/level"), QStringLiteral("DEBUG")));
    QVERIFY(QDir().rmdir(installation.logFolder()));
    installation.start({vdi});
    QVERIFY(installation.waitUntilAnswering());
    QVERIFY(!QFile::exists(installation.logFolder()));
}

QTEST_GUILESS_MAIN(TestStartupSettings)
#include "tst_startupsettings.moc"
