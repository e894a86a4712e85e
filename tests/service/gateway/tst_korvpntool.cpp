#include "service/gateway/korvpntool.h"
#include "tests/service/support/testgateway.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTest>

#include <array>
#include <cstring>

/// Finding, loading and asking the VPN client's library, each time in a process of its own.
class TestKorVpnTool : public QObject
{
    Q_OBJECT

private slots:
    void record_isReadAtItsOffsets();
    void record_addressEndsAtTheFirstNul();
    void absentLibrary_isAsNoGateway();
    void libraryBesideTheProgram_isAsked();
    void libraryOnTheSearchPath_isAsked();
    void libraryBesideTheProgram_winsOverTheSearchPath();
    void incompleteLibrary_isAsNoGateway();
    void incompleteLibraryBesideTheProgram_isPassedOver();
    void libraryThatComesLater_isFoundAtTheNextQuery();
    void wholeLibraryInPlaceOfAnIncompleteOne_isFoundAtTheNextQuery();
    void libraryOnceFound_isKept();
    void damagedLibraryBesideTheProgram_isPassedOverWithOneWarning();
    void damagedLibraryAlone_isAsNoGatewayWithOneWarning();
    void folderWithTheLibrarysName_isAsNone();
};

namespace {

constexpr int processMs = 20000;
constexpr std::size_t recordSize = 256;
constexpr std::size_t addressOffset = 164;

const QString completeLibrary = QStringLiteral(GATEWAY_LIBRARY);
const QString incompleteLibrary = QStringLiteral(INCOMPLETE_LIBRARY);

/// The bytes of a record, as the library has it in memory.
struct alignas(KorInfoBlock) Record : std::array<char, recordSize>
{
};

KorGateway gatewayIn(const Record &record)
{
    return gatewayOf(*reinterpret_cast<const KorInfoBlock *>(record.data()));
}

/// A program folder of its own with the probe in it, and the probe running from there.
class Probe
{
public:
    Probe()
        : m_folder(QCoreApplication::applicationDirPath() + QStringLiteral("/probe-XXXXXX"))
    {
        const QFileInfo probe(QStringLiteral(GATEWAY_PROBE));
        m_program = m_folder.filePath(probe.fileName());
        QFile::copy(probe.filePath(), m_program);
    }

    ~Probe() { end(); }

    void end()
    {
        m_process.closeWriteChannel();
        m_process.waitForFinished(processMs);
    }

    QString folder() const { return m_folder.path(); }

    void put(const QString &library) const
    {
        const QString place = m_folder.filePath(QFileInfo(completeLibrary).fileName());
        QFile::remove(place);
        QVERIFY(QFile::copy(library, place));
    }

    /// Puts something that is no library in its place.
    void putDamaged() const
    {
        QFile file(m_folder.filePath(QFileInfo(completeLibrary).fileName()));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.write("This is no library.") > 0);
    }

    void putFolder() const
    {
        QVERIFY(QDir(m_folder.path()).mkdir(QFileInfo(completeLibrary).fileName()));
    }

    void take() const
    {
        QVERIFY(QFile::remove(m_folder.filePath(QFileInfo(completeLibrary).fileName())));
    }

    /// Starts the probe, with \a searchFolder on the system's library search path.
    void start(const QString &searchFolder = {})
    {
        auto environment = QProcessEnvironment::systemEnvironment();
        if (!searchFolder.isEmpty()) {
            for (const char *name : {"LD_LIBRARY_PATH", "PATH"}) {
                const QString variable = QLatin1String(name);
                environment.insert(variable, searchFolder + QDir::listSeparator()
                                                 + environment.value(variable));
            }
        }
        m_process.setProcessEnvironment(environment);
        m_process.start(m_program, QStringList());
        QVERIFY(m_process.waitForStarted(processMs));
    }

    /// What the probe says to one query.
    QByteArray ask()
    {
        m_process.write("\n");
        while (!m_process.canReadLine()) {
            if (!m_process.waitForReadyRead(processMs)) {
                return "no answer: " + m_process.readAllStandardError();
            }
        }
        return m_process.readLine().trimmed();
    }

    /// What it has logged. Ends it: its answers and its log come by two roads, of which either may
    /// be the faster one.
    QStringList warnings()
    {
        end();
        const QString text = QString::fromLocal8Bit(m_process.readAllStandardError());
        return text.split(u'\n', Qt::SkipEmptyParts).filter(QStringLiteral("cannot be loaded"));
    }

private:
    QTemporaryDir m_folder;
    QString m_program;
    QProcess m_process;
};

QString folderOf(const QString &file)
{
    return QFileInfo(file).path();
}

} // namespace

void TestKorVpnTool::record_isReadAtItsOffsets()
{
    Record record;
    record.fill('#');
    const qint32 port = 0x01020304;
    std::memcpy(record.data(), &port, sizeof port);
    std::memcpy(record.data() + addressOffset, "gw.example", sizeof "gw.example");
    const KorGateway gateway = gatewayIn(record);
    QCOMPARE(gateway.port, port);
    QCOMPARE(gateway.address, QStringLiteral("gw.example"));
}

void TestKorVpnTool::record_addressEndsAtTheFirstNul()
{
    Record record;
    record.fill('\0');
    std::memcpy(record.data() + addressOffset, "a\0b", sizeof "a\0b");
    QCOMPARE(gatewayIn(record).address, QStringLiteral("a"));
    QCOMPARE(gatewayIn(record).port, 0);
}

void TestKorVpnTool::absentLibrary_isAsNoGateway()
{
    const TestGateway gateway("10.1.1.1", 443);
    Probe probe;
    probe.start();
    QCOMPARE(probe.ask(), QByteArray("none"));
    QCOMPARE(probe.ask(), QByteArray("none"));
    QCOMPARE(probe.warnings(), QStringList());
    QCOMPARE(gateway.calls(), QStringList());
}

void TestKorVpnTool::libraryBesideTheProgram_isAsked()
{
    const TestGateway gateway("10.1.1.1", 443);
    Probe probe;
    probe.put(completeLibrary);
    probe.start();
    QCOMPARE(probe.ask(), QByteArray("10.1.1.1:443"));
    QCOMPARE(gateway.calls(), TestGateway::oneQuery());
}

void TestKorVpnTool::libraryOnTheSearchPath_isAsked()
{
    const TestGateway gateway("10.1.1.1", 443);
    Probe probe;
    probe.start(folderOf(completeLibrary));
    QCOMPARE(probe.ask(), QByteArray("10.1.1.1:443"));
}

void TestKorVpnTool::libraryBesideTheProgram_winsOverTheSearchPath()
{
    const TestGateway gateway("10.1.1.1", 443);
    Probe probe;
    probe.put(completeLibrary);
    probe.start(folderOf(incompleteLibrary));
    QCOMPARE(probe.ask(), QByteArray("10.1.1.1:443"));
}

void TestKorVpnTool::incompleteLibrary_isAsNoGateway()
{
    const TestGateway gateway("10.1.1.1", 443);
    Probe probe;
    probe.put(incompleteLibrary);
    probe.start();
    QCOMPARE(probe.ask(), QByteArray("none"));
    QCOMPARE(gateway.calls(), QStringList());
}

void TestKorVpnTool::incompleteLibraryBesideTheProgram_isPassedOver()
{
    const TestGateway gateway("10.1.1.1", 443);
    Probe probe;
    probe.put(incompleteLibrary);
    probe.start(folderOf(completeLibrary));
    QCOMPARE(probe.ask(), QByteArray("10.1.1.1:443"));
}

void TestKorVpnTool::libraryThatComesLater_isFoundAtTheNextQuery()
{
    const TestGateway gateway("10.1.1.1", 443);
    Probe probe;
    probe.start();
    QCOMPARE(probe.ask(), QByteArray("none"));
    probe.put(completeLibrary);
    QCOMPARE(probe.ask(), QByteArray("10.1.1.1:443"));
}

void TestKorVpnTool::wholeLibraryInPlaceOfAnIncompleteOne_isFoundAtTheNextQuery()
{
    const TestGateway gateway("10.1.1.1", 443);
    Probe probe;
    probe.put(incompleteLibrary);
    probe.start();
    QCOMPARE(probe.ask(), QByteArray("none"));
    probe.put(completeLibrary);
    QCOMPARE(probe.ask(), QByteArray("10.1.1.1:443"));
}

void TestKorVpnTool::libraryOnceFound_isKept()
{
#ifdef Q_OS_WIN
    QSKIP("The system does not let go of the file of a loaded library.");
#endif
    const TestGateway gateway("10.1.1.1", 443);
    Probe probe;
    probe.put(completeLibrary);
    probe.start();
    QCOMPARE(probe.ask(), QByteArray("10.1.1.1:443"));
    probe.take();
    QCOMPARE(probe.ask(), QByteArray("10.1.1.1:443"));
    QCOMPARE(gateway.calls(), TestGateway::oneQuery() + TestGateway::oneQuery());
}

void TestKorVpnTool::damagedLibraryBesideTheProgram_isPassedOverWithOneWarning()
{
    const TestGateway gateway("10.1.1.1", 443);
    Probe probe;
    probe.putDamaged();
    probe.start(folderOf(completeLibrary));
    QCOMPARE(probe.ask(), QByteArray("10.1.1.1:443"));
    QCOMPARE(probe.ask(), QByteArray("10.1.1.1:443"));
    QCOMPARE(probe.warnings().size(), 1);
}

void TestKorVpnTool::damagedLibraryAlone_isAsNoGatewayWithOneWarning()
{
    const TestGateway gateway("10.1.1.1", 443);
    Probe probe;
    probe.putDamaged();
    probe.start();
    QCOMPARE(probe.ask(), QByteArray("none"));
    QCOMPARE(probe.ask(), QByteArray("none"));
    probe.put(completeLibrary);
    QCOMPARE(probe.ask(), QByteArray("10.1.1.1:443"));
    const QStringList warnings = probe.warnings();
    QCOMPARE(warnings.size(), 1);
    QVERIFY2(warnings.first().contains(QFileInfo(completeLibrary).fileName()),
             qPrintable(warnings.first()));
}

void TestKorVpnTool::folderWithTheLibrarysName_isAsNone()
{
    const TestGateway gateway("10.1.1.1", 443);
    Probe probe;
    probe.putFolder();
    probe.start();
    QCOMPARE(probe.ask(), QByteArray("none"));
    QCOMPARE(probe.warnings(), QStringList());
}

QTEST_GUILESS_MAIN(TestKorVpnTool)
#include "tst_korvpntool.moc"
