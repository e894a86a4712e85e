#include "service/diagnosis/netstatetestthread.h"
#include "service/gateway/vpnaccount.h"
#include "tests/standins/standinfolder.h"
#include "tests/standins/standinvpnclient.h"
#include "tests/support/logcapture.h"

#include <QFile>
#include <QTest>

#include <memory>

namespace {

constexpr int missing = -1;
constexpr char accountVariable[] = "STANDIN_ACCOUNT";
constexpr char stateVariable[] = "STANDIN_STATE";

const QString completeLibrary = QStringLiteral(STANDIN_TOOLSDK);
const QString emptyLibrary = QStringLiteral(STANDIN_EMPTYSDK);

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
    void fileThatIsNoLibrary_isMinusOne();
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

void TestVpnAccount::fileThatIsNoLibrary_isMinusOne()
{
    QFile text(m_folder->path() + QStringLiteral("/text"));
    QVERIFY(text.open(QIODevice::WriteOnly));
    text.write("This is no library.");
    text.close();
    QCOMPARE(vpnAccountState(installVpnClient(m_folder->path(), text.fileName())), missing);
}

void TestVpnAccount::libraryInstalledLater_isFound()
{
    qputenv(stateVariable, "5");
    const QString iconPath = installVpnClient(m_folder->path(), completeLibrary);
    const QString library
        = iconPath.left(iconPath.lastIndexOf(u'\\')) + QStringLiteral("\\toolSDK.dll");
    QVERIFY(QFile::remove(library));
    QCOMPARE(vpnAccountState(iconPath), missing);
    QVERIFY(QFile::copy(completeLibrary, library));
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
    if (!canRegisterVpnClient()) {
        QSKIP("would change this machine's registry");
    }
    const QString iconPath = QStringLiteral("C:\\Program Files\\temp\\client.ico");
    registerVpnClient(iconPath);
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
    if (!canRegisterVpnClient()) {
        QSKIP("would change this machine's registry");
    }
    qputenv(accountVariable, "lisi");
    qputenv(stateVariable, "3");
    registerVpnClient(installVpnClient(m_folder->path(), completeLibrary));
    NetStateTestThread diagnosis;
    QCOMPARE(diagnosis.NORVIK_logState(), 3);
    QCOMPARE(m_log->lines(), QStringList(QStringLiteral("debug: accountlisi")));
}

QTEST_GUILESS_MAIN(TestVpnAccount)
#include "tst_vpnaccount.moc"
