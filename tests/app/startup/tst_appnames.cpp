#include "app/base/apppaths.h"
#include "app/base/loghandler.h"
#include "app/startup/qtenvironment.h"
#include "app/startup/singleapplication.h"
#include "tests/support/fixednames.h"

#include <QTest>

#include <type_traits>

/// The names, types and orders that others count on, to the letter.
class TestAppNames : public QObject
{
    Q_OBJECT

private slots:
    void singleApplication_hasOnePrivateSlot();
};

// Start-up and the configuration rule.
static_assert(std::is_same_v<decltype(miravelVersion), QString>);
static_assert(std::is_same_v<decltype(logFolderPath), QString>);
static_assert(std::is_same_v<decltype(configFilePath), QString>);
static_assert(hasType<void (*)(const QString &)>(&initAppPaths));
static_assert(hasType<QString (*)()>(&miravelConfigPath));
static_assert(hasType<void (*)()>(&clearQtEnvironment));

// The log.
static_assert(std::is_same_v<decltype(logLevelThreshold), qint32>);
static_assert(std::is_same_v<std::remove_reference_t<decltype(logBasePath)>, QString>);
static_assert(hasType<void (*)(const QString &, const QString &)>(&initLogSetting));
static_assert(hasType<QtMessageHandler>(&logMessageHandler));
static_assert(hasType<MessageLevel (*)(QtMsgType)>(&msgTypeToLevel));
static_assert(hasType<QString (*)(const QString &)>(&sourceFileName));
static_assert(hasType<void (*)()>(&backupLogFile));

// The application object. Its window is guarded, but used as a plain pointer is.
static_assert(std::is_base_of_v<QApplication, SingleApplication>);
static_assert(std::is_constructible_v<SingleApplication, int &, char **>);
static_assert(hasType<bool (SingleApplication::*)() const>(&SingleApplication::isRunning));
static_assert(std::is_convertible_v<decltype(SingleApplication::w), QWidget *>);
static_assert(std::is_assignable_v<decltype((std::declval<SingleApplication &>().w)), QWidget *>);

void TestAppNames::singleApplication_hasOnePrivateSlot()
{
    const QMetaObject &type = SingleApplication::staticMetaObject;
    QCOMPARE(declared(type, QMetaMethod::Slot),
             QStringList(QStringLiteral("NewLocalConnection()")));
    QVERIFY(slotsAre(type, QMetaMethod::Private));
    QCOMPARE(declared(type, QMetaMethod::Signal), QStringList());
}

QTEST_GUILESS_MAIN(TestAppNames)
#include "tst_appnames.moc"
