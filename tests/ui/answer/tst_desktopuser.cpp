#include "app/base/apppaths.h"
#include "tests/standins/standinregistry.h"
#include "ui/answer/desktopuser.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

namespace {

const QString logonKey = QStringLiteral("Software\\VDAgent\\LogonInfo");

} // namespace

/// Where the name comes from by which questions are asked.
class TestDesktopUser : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void startedByACaller_readsTheClientsSettings();
    void startedByACaller_withoutSettings_isEmpty();
    void startedByAShortcut_readsTheRegistry();
    void startedByAShortcut_withoutTheKey_isEmpty();
    void unknownLayout_isEmpty();

private:
    static void write(const QString &path, const QByteArray &content);

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestDesktopUser::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    const QDir folder(m_folder->path());
    QVERIFY(folder.mkpath(QStringLiteral("config")));
    QVERIFY(folder.mkpath(QStringLiteral("Miravel")));
    QDir::setCurrent(folder.filePath(QStringLiteral("Miravel")));
}

void TestDesktopUser::cleanup()
{
    QDir::setCurrent(QDir::tempPath());
    m_folder.reset();
}

void TestDesktopUser::write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

void TestDesktopUser::startedByACaller_readsTheClientsSettings()
{
    initAppPaths(QStringLiteral("ombra"));
    write(QStringLiteral("../config/CommonTerminal.ini"), "[RemLastUser]\nlastuser=w00123456\n");
    QCOMPARE(desktopUserName(), QStringLiteral("w00123456"));
}

void TestDesktopUser::startedByACaller_withoutSettings_isEmpty()
{
    initAppPaths(QStringLiteral("vdi"));
    QCOMPARE(desktopUserName(), QString());
}

void TestDesktopUser::startedByAShortcut_readsTheRegistry()
{
    if (StandInRegistry::whyNot() != nullptr) {
        QSKIP(StandInRegistry::whyNot());
    }
    StandInRegistry registry;
    registry.setText(logonKey, QStringLiteral("iRAIUser"), QStringLiteral("w00654321"));
    initAppPaths(QString());
    write(QStringLiteral("../config/CommonTerminal.ini"), "[RemLastUser]\nlastuser=other\n");
    QCOMPARE(desktopUserName(), QStringLiteral("w00654321"));
}

void TestDesktopUser::startedByAShortcut_withoutTheKey_isEmpty()
{
    initAppPaths(QString());
    QCOMPARE(desktopUserName(), QString());
    QVERIFY(!StandInRegistry::hasKey(logonKey)); // nor has reading made it
}

void TestDesktopUser::unknownLayout_isEmpty()
{
    initAppPaths(QString());
    const QString before = miravelVersion;
    miravelVersion = QStringLiteral("OTHER");
    QCOMPARE(desktopUserName(), QString());
    miravelVersion = before;
}

QTEST_GUILESS_MAIN(TestDesktopUser)
#include "tst_desktopuser.moc"
