#include "service/diagnosis/netstatetestthread.h"
#include "service/gateway/vpnaccount.h"
#include "tests/standins/standinfolder.h"
#include "tests/standins/standinregistry.h"
#include "tests/standins/standinvpnclient.h"
#include "tests/support/logcapture.h"

#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <memory>

namespace {

constexpr int missing = -1;
constexpr char accountVariable[] = "STANDIN_ACCOUNT";
constexpr char stateVariable[] = "STANDIN_STATE";

const QString completeLibrary = QStringLiteral(STANDIN_TOOLSDK);
const QString emptyLibrary = QStringLiteral(STANDIN_EMPTYSDK);
const QString needyLibrary = QStringLiteral(STANDIN_NEEDYSDK);
const QString part = QStringLiteral(STANDIN_PART);

/// \a library as if it had been made for a 32-bit processor.
QByteArray forOtherProcessor(QByteArray library)
{
    // The processor's number: in the header whose place is told at 0x3c, or at 18 on other systems.
    const bool isForWindows = library.startsWith("MZ");
    const int place = isForWindows ? static_cast<uchar>(library.at(0x3c))
                                         + 256 * static_cast<uchar>(library.at(0x3d)) + 4
                                   : 18;
    library[place] = isForWindows ? 0x4c : 3;
    library[place + 1] = isForWindows ? 1 : 0;
    return library;
}

QString libraryOf(const QString &iconPath)
{
    return iconPath.left(iconPath.lastIndexOf(u'\\')) + QStringLiteral("\\toolSDK.dll");
}

} // namespace

/// Asking the VPN client's library for its account.
class TestVpnAccount : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void state_isPassedOnUnchanged_data();
    void state_isPassedOnUnchanged();
    void account_isLogged_data();
    void account_isLogged();
    void missingLibrary_isMinusOne_data();
    void missingLibrary_isMinusOne();
    void libraryWithoutTheFunction_isMinusOne();
    void libraryThatCannotBeLoaded_isMinusOneWithOneWarning_data();
    void libraryThatCannotBeLoaded_isMinusOneWithOneWarning();
    // What a library needs stays loaded too, so the test that has it comes after those that lack
    // it.
    void libraryWithoutWhatItNeeds_isMinusOneWithOneWarning();
    void report_tellsAbsentUnusableAndUsableApart();
    void libraryThatNeedsOthersOfItsFolder_isAsked();
    void libraryInstalledLater_isFound();
    void library_staysLoadedBetweenRuns();
    void iconPath_comesFromTheRegistry();
    void missingRegistryValue_isMinusOne();
    void state_isFoundThroughTheRegistry();

private:
    std::unique_ptr<StandInFolder> m_folder;
    std::unique_ptr<LogCapture> m_log;
};

void TestVpnAccount::init()
{
    qunsetenv(accountVariable);
    qunsetenv(stateVariable);
    m_folder = std::make_unique<StandInFolder>();
    m_log = std::make_unique<LogCapture>();
}

void TestVpnAccount::cleanup()
{
    QCOMPARE(m_log->foreignLines(), QStringList());
    m_log.reset();
    m_folder.reset();
}

void TestVpnAccount::state_isPassedOnUnchanged_data()
{
    QTest::addColumn<int>("state");
    QTest::newRow("zero") << 0;
    QTest::newRow("one") << 1;
    QTest::newRow("as if missing") << -1;
    QTest::newRow("large") << 2'147'483'647;
}

void TestVpnAccount::state_isPassedOnUnchanged()
{
    QFETCH(int, state);
    qputenv(stateVariable, QByteArray::number(state));
    QCOMPARE(vpnAccountState(installVpnClient(m_folder->path(), completeLibrary)), state);
    QCOMPARE(m_log->lines(), QStringList(QStringLiteral("debug: account")));
}

void TestVpnAccount::account_isLogged_data()
{
    QTest::addColumn<QByteArray>("account");
    QTest::addColumn<QString>("logged");
    QTest::newRow("name") << QByteArray("zhangsan") << QStringLiteral("zhangsan");
    QTest::newRow("UTF-8") << QStringLiteral("张三").toUtf8() << QStringLiteral("张三");
    QTest::newRow("as long as fits with its NUL") << QByteArray(63, 'a') << QString(63, u'a');
    QTest::newRow("no room for the NUL") << QByteArray(64, 'a') << QString(64, u'a');
}

void TestVpnAccount::account_isLogged()
{
    QFETCH(QByteArray, account);
    QFETCH(QString, logged);
    qputenv(accountVariable, account);
    qputenv(stateVariable, "5");
    QCOMPARE(vpnAccountState(installVpnClient(m_folder->path(), completeLibrary)), 5);
    QCOMPARE(m_log->lines(), QStringList(QStringLiteral("debug: account") + logged));
}

void TestVpnAccount::missingLibrary_isMinusOne_data()
{
    QTest::addColumn<QString>("iconPath");
    QTest::newRow("no path") << QString();
    QTest::newRow("no such folder") << QStringLiteral("C:\\no such folder\\client.ico");
    QTest::newRow("no folder") << QStringLiteral("client.ico");
    QTest::newRow("quoted") << QStringLiteral("\"C:\\client\\client.ico\",0");
}

void TestVpnAccount::missingLibrary_isMinusOne()
{
    QFETCH(QString, iconPath);
    QCOMPARE(vpnAccountState(iconPath), missing);
    QCOMPARE(m_log->lines(), QStringList());
}

void TestVpnAccount::libraryWithoutTheFunction_isMinusOne()
{
    QCOMPARE(vpnAccountState(installVpnClient(m_folder->path(), emptyLibrary)), missing);
    QCOMPARE(m_log->lines(), QStringList());
}

void TestVpnAccount::libraryThatCannotBeLoaded_isMinusOneWithOneWarning_data()
{
    QTest::addColumn<QByteArray>("content");
    QFile file(completeLibrary);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray whole = file.readAll();
    QTest::newRow("no library") << QByteArray("This is no library.");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("cut off") << whole.left(300);
    QTest::newRow("for another processor") << forOtherProcessor(whole);
}

void TestVpnAccount::libraryThatCannotBeLoaded_isMinusOneWithOneWarning()
{
    QFETCH(QByteArray, content);
    QFile file(m_folder->path() + QStringLiteral("/damaged"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
    file.close();
    const QString iconPath = installVpnClient(m_folder->path(), file.fileName());
    QCOMPARE(vpnAccountState(iconPath), missing);
    QCOMPARE(vpnAccountState(iconPath), missing);
    const QString start = QStringLiteral("warning: A library of the VPN client cannot be loaded. ")
                        + libraryOf(iconPath) + QStringLiteral(": ");
    QCOMPARE(m_log->lines().size(), 1);
    QVERIFY2(m_log->lines().first().startsWith(start), qPrintable(m_log->lines().first()));
    QVERIFY(m_log->lines().first().size() > start.size() + 5);
}

void TestVpnAccount::libraryWithoutWhatItNeeds_isMinusOneWithOneWarning()
{
    const QString iconPath = installVpnClient(m_folder->path(), needyLibrary);
    QCOMPARE(vpnAccountState(iconPath), missing);
    QCOMPARE(vpnAccountState(iconPath), missing);
    QCOMPARE(m_log->lines().size(), 1);
    QVERIFY(m_log->lines().first().startsWith(QStringLiteral("warning: ")));
}

void TestVpnAccount::report_tellsAbsentUnusableAndUsableApart()
{
    using State = LibraryReport::State;
    QCOMPARE(int(examineVpnAccountLibrary(QString()).state), int(State::Absent));
    const auto reportOf = [this](const char *folder, const QString &library) {
        return examineVpnAccountLibrary(
            installVpnClient(m_folder->path() + QLatin1Char('/') + QLatin1String(folder), library));
    };
    const LibraryReport needy = reportOf("needy", needyLibrary);
    QCOMPARE(int(needy.state), int(State::Unusable));
    QVERIFY2(needy.reason.contains(QStringLiteral("toolSDK.dll: ")), qPrintable(needy.reason));
    const LibraryReport empty = reportOf("empty", emptyLibrary);
    QCOMPARE(int(empty.state), int(State::Unusable));
    QVERIFY2(empty.reason.contains(QStringLiteral("getAccount")), qPrintable(empty.reason));
    QCOMPARE(int(reportOf("complete", completeLibrary).state), int(State::Usable));
    QCOMPARE(m_log->lines(), QStringList());
}

void TestVpnAccount::libraryThatNeedsOthersOfItsFolder_isAsked()
{
    const QString iconPath = installVpnClient(m_folder->path(), needyLibrary);
    QVERIFY(QFile::copy(part, QFileInfo(libraryOf(iconPath)).path() + QLatin1Char('/')
                                  + QFileInfo(part).fileName()));
    QCOMPARE(vpnAccountState(iconPath), 7);
}

void TestVpnAccount::libraryInstalledLater_isFound()
{
    qputenv(stateVariable, "5");
    const QString iconPath = installVpnClient(m_folder->path(), completeLibrary);
    QVERIFY(QFile::remove(libraryOf(iconPath)));
    QCOMPARE(vpnAccountState(iconPath), missing);
    QVERIFY(QFile::copy(completeLibrary, libraryOf(iconPath)));
    QCOMPARE(vpnAccountState(iconPath), 5);
}

void TestVpnAccount::library_staysLoadedBetweenRuns()
{
    const QString iconPath = installVpnClient(m_folder->path(), completeLibrary);
    QCOMPARE(vpnAccountState(iconPath), 1); // the stand-in counts its calls
    QCOMPARE(vpnAccountState(iconPath), 2);
}

void TestVpnAccount::iconPath_comesFromTheRegistry()
{
    if (StandInRegistry::whyNot() != nullptr) {
        QSKIP(StandInRegistry::whyNot());
    }
    StandInRegistry registry;
    const QString iconPath = QStringLiteral("C:\\Program Files\\temp\\client.ico");
    registerVpnClient(registry, iconPath);
    QCOMPARE(vpnClientIconPath(), iconPath);
}

void TestVpnAccount::missingRegistryValue_isMinusOne()
{
    NetStateTestThread diagnosis;
    QCOMPARE(vpnClientIconPath(), QString());
    QCOMPARE(diagnosis.NORVIK_logState(), missing);
    QCOMPARE(m_log->lines(), QStringList());
}

void TestVpnAccount::state_isFoundThroughTheRegistry()
{
    if (StandInRegistry::whyNot() != nullptr) {
        QSKIP(StandInRegistry::whyNot());
    }
    StandInRegistry registry;
    qputenv(accountVariable, "lisi");
    qputenv(stateVariable, "3");
    registerVpnClient(registry, installVpnClient(m_folder->path(), completeLibrary));
    NetStateTestThread diagnosis;
    QCOMPARE(diagnosis.NORVIK_logState(), 3);
    QCOMPARE(m_log->lines(), QStringList(QStringLiteral("debug: accountlisi")));
}

QTEST_GUILESS_MAIN(TestVpnAccount)
#include "tst_vpnaccount.moc"
