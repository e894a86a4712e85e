#include "app/base/machineregistry.h"
#include "tests/standins/standinregistry.h"

#include <QTest>

#include <memory>

namespace {

using View = StandInRegistry::View;

const QString key = QStringLiteral("Software\\MiravelTest\\Views");
const QString name = QStringLiteral("User");

// The registry's own numbers for kinds of values.
constexpr quint32 textKind = 1;
constexpr quint32 expandableKind = 2;
constexpr quint32 binaryKind = 3;
constexpr quint32 numberKind = 4;
constexpr quint32 longNumberKind = 11;

/// Characters as the registry holds them, with whatever NULs \a text has.
QByteArray wide(const QString &text)
{
    return QByteArray(reinterpret_cast<const char *>(text.utf16()), text.size() * 2);
}

} // namespace

/// The two views that Windows has of the machine's registry, and the kinds of values in it.
class TestRegistryViews : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void valueOf32BitProgramsOnly_isFound();
    void valueOf32BitProgramsBesideAKeyWithoutIt_isFound();
    void bothViews_theOneOf64BitProgramsWins();
    void emptyValueOf64BitPrograms_countsAsOne();
    void everyKind_isReadAsText_data();
    void everyKind_isReadAsText();

private:
    std::unique_ptr<StandInRegistry> m_registry;
};

void TestRegistryViews::init()
{
    if (StandInRegistry::whyNot() != nullptr) {
        QSKIP(StandInRegistry::whyNot());
    }
    m_registry = std::make_unique<StandInRegistry>();
}

void TestRegistryViews::cleanup()
{
    m_registry.reset();
    QVERIFY(!StandInRegistry::hasKey(key, View::Bits64));
    QVERIFY(!StandInRegistry::hasKey(key, View::Bits32));
}

void TestRegistryViews::valueOf32BitProgramsOnly_isFound()
{
    m_registry->setText(key, name, QStringLiteral("agent"), View::Bits32);
    QCOMPARE(machineRegistryText(key, name), QStringLiteral("agent"));
    QVERIFY(!StandInRegistry::hasKey(key, View::Bits64));
}

void TestRegistryViews::valueOf32BitProgramsBesideAKeyWithoutIt_isFound()
{
    m_registry->setText(key, QStringLiteral("Other"), QStringLiteral("x"), View::Bits64);
    m_registry->setText(key, name, QStringLiteral("agent"), View::Bits32);
    QCOMPARE(machineRegistryText(key, name), QStringLiteral("agent"));
}

void TestRegistryViews::bothViews_theOneOf64BitProgramsWins()
{
    m_registry->setText(key, name, QStringLiteral("32"), View::Bits32);
    m_registry->setText(key, name, QStringLiteral("64"), View::Bits64);
    QCOMPARE(machineRegistryText(key, name), QStringLiteral("64"));
}

void TestRegistryViews::emptyValueOf64BitPrograms_countsAsOne()
{
    m_registry->setText(key, name, QStringLiteral("32"), View::Bits32);
    m_registry->setText(key, name, QString(), View::Bits64);
    QCOMPARE(machineRegistryText(key, name), QString());
}

void TestRegistryViews::everyKind_isReadAsText_data()
{
    QTest::addColumn<quint32>("kind");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");
    const QString folder = QStringLiteral("%ProgramFiles%\\client");
    const QString longText(100'000, u'x');
    QTest::newRow("no bytes") << textKind << QByteArray() << QString();
    QTest::newRow("no NUL at its end")
        << textKind << wide(QStringLiteral("ab")) << QStringLiteral("ab");
    QTest::newRow("NUL inside") << textKind << wide(QStringLiteral("ab") + QChar() + u'c')
                                << QStringLiteral("ab");
    QTest::newRow("half a character")
        << textKind << wide(QStringLiteral("ab")) + 'c' << QStringLiteral("ab");
    QTest::newRow("long") << textKind << wide(longText + QChar()) << longText;
    QTest::newRow("expandable, which stays as it is")
        << expandableKind << wide(folder + QChar()) << folder;
    QTest::newRow("number") << numberKind << QByteArray("\x07\x00\x00\x00", 4)
                            << QStringLiteral("7");
    QTest::newRow("long number") << longNumberKind << QByteArray("\x08\0\0\0\0\0\0\0", 8)
                                 << QStringLiteral("8");
    QTest::newRow("number of a wrong size") << numberKind << QByteArray("\x07\x00", 2) << QString();
    QTest::newRow("bytes") << binaryKind << QByteArray("ab\0", 4) << QString();
}

void TestRegistryViews::everyKind_isReadAsText()
{
    QFETCH(quint32, kind);
    QFETCH(QByteArray, bytes);
    QFETCH(QString, text);
    m_registry->setValue(key, name, kind, bytes);
    QCOMPARE(machineRegistryText(key, name), text);
}

QTEST_GUILESS_MAIN(TestRegistryViews)
#include "tst_registryviews.moc"
