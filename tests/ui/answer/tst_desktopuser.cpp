#include "app/base/apppaths.h"
#include "ui/answer/desktopuser.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

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
#ifdef Q_OS_WIN
    QSKIP("the key belongs to the whole machine, where a test must not write");
#else
    // Here the key is a file of its name.
    initAppPaths(QString());
    write(QStringLiteral("../config/CommonTerminal.ini"), "[RemLastUser]\nlastuser=other\n");
    write(QStringLiteral("HKEY_LOCAL_MACHINE\\Software\\VDAgent\\LogonInfo"),
          "[General]\niRAIUser=w00654321\n");
    QCOMPARE(desktopUserName(), QStringLiteral("w00654321"));
#endif
}

void TestDesktopUser::startedByAShortcut_withoutTheKey_isEmpty()
{
    initAppPaths(QString());
    QCOMPARE(desktopUserName(), QString());
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
