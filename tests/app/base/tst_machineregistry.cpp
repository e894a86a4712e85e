#include "app/base/machineregistry.h"
#include "tests/standins/standinregistry.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace {

using View = StandInRegistry::View;

const QString keyAbove = QStringLiteral("Software\\MiravelTest");
const QString key = QStringLiteral("Software\\MiravelTest\\LogonInfo");
const QString name = QStringLiteral("User");

} // namespace

/// Reading values of the machine's registry, in the tests' own one.
class TestMachineRegistry : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void missingKey_isEmptyAndIsNotMade();
    void missingValue_isEmpty();
    void text_isRead();
    void text_isReadAnewEachTime();

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<StandInRegistry> m_registry;
};

void TestMachineRegistry::init()
{
    if (StandInRegistry::whyNot() != nullptr) {
        QSKIP(StandInRegistry::whyNot());
    }
    m_folder = std::make_unique<QTemporaryDir>(); // where keys are files
    QDir::setCurrent(m_folder->path());
    m_registry = std::make_unique<StandInRegistry>();
}

void TestMachineRegistry::cleanup()
{
    m_registry.reset();
    QVERIFY(!StandInRegistry::hasKey(keyAbove, View::Bits64));
    QVERIFY(!StandInRegistry::hasKey(keyAbove, View::Bits32));
    QDir::setCurrent(QDir::tempPath());
    m_folder.reset();
}

void TestMachineRegistry::missingKey_isEmptyAndIsNotMade()
{
    QCOMPARE(machineRegistryText(key, name), QString());
    for (const View view : {View::Bits64, View::Bits32}) {
        QVERIFY(!StandInRegistry::hasKey(key, view));
        QVERIFY(!StandInRegistry::hasKey(keyAbove, view));
    }
}

void TestMachineRegistry::missingValue_isEmpty()
{
    m_registry->setText(key, QStringLiteral("Other"), QStringLiteral("x"));
    QCOMPARE(machineRegistryText(key, name), QString());
}

void TestMachineRegistry::text_isRead()
{
    m_registry->setText(key, name, QStringLiteral("云桌面用户"));
    QCOMPARE(machineRegistryText(key, name), QStringLiteral("云桌面用户"));
}

void TestMachineRegistry::text_isReadAnewEachTime()
{
    m_registry->setText(key, name, QStringLiteral("first"));
    QCOMPARE(machineRegistryText(key, name), QStringLiteral("first"));
    m_registry->setText(key, name, QStringLiteral("the second"));
    QCOMPARE(machineRegistryText(key, name), QStringLiteral("the second"));
}

QTEST_GUILESS_MAIN(TestMachineRegistry)
#include "tst_machineregistry.moc"
