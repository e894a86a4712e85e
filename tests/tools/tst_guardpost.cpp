#include "tests/support/childprocess.h"

#include <QDir>
#include <QFile>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

/// The real guardpost, and a listener that plays the assistant.
class TestGuardPost : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void question_isPostedAndItsAcknowledgementPrinted();
    void severalQuestions_goOutOneAfterTheOther();
    void rawFile_goesOutAsItIs();
    void rawInput_goesOutAsItIs();
    void portOfAnInstallation_isFound_data();
    void portOfAnInstallation_isFound();
    void twoAcknowledgementsAtOnce_countForTwoQuestions();

    void noAcknowledgement_isStatusOne();
    void closedConnection_isStatusOne();
    void nobodyListening_isStatusThree();
    void mistakes_areStatusTwo_data();
    void mistakes_areStatusTwo();
    void settingsWithoutAPort_areStatusTwo_data();
    void settingsWithoutAPort_areStatusTwo();
    void help_isPrinted();

private:
    void start(const QStringList &arguments, const QByteArray &input = {});
    [[nodiscard]] QString portArgument() const;
    [[nodiscard]] QByteArray receive();
    void writeIni(const QByteArray &section);

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QTcpServer> m_server;
    std::unique_ptr<ChildProcess> m_program;
    QTcpSocket *m_connection = nullptr; // owned by the server
};

namespace {

constexpr int patienceMs = 30'000;
const QByteArray acknowledgement = QByteArrayLiteral("{\"code\":\"0\"}");

QByteArray document(const QByteArray &question)
{
    return "{\"question\":\"" + question + "\",\"rawquery\":\"" + question + "\"}";
}

} // namespace

void TestGuardPost::init()
{
    m_program.reset();
    m_connection = nullptr;
    m_server = std::make_unique<QTcpServer>();
    QVERIFY(m_server->listen(QHostAddress(QHostAddress::LocalHost)));
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(QDir(m_folder->path()).mkdir(QStringLiteral("config")));
}

void TestGuardPost::start(const QStringList &arguments, const QByteArray &input)
{
    m_program = std::make_unique<ChildProcess>();
    m_program->start(QStringLiteral(GUARDPOST_PROGRAM), arguments);
    QVERIFY(m_program->waitForStarted(patienceMs));
    m_program->write(input);
    QVERIFY(input.isEmpty() || m_program->waitForBytesWritten(patienceMs));
    m_program->closeWriteChannel();
}

QString TestGuardPost::portArgument() const
{
    return QStringLiteral("--port=%1").arg(m_server->serverPort());
}

QByteArray TestGuardPost::receive()
{
    if (m_connection == nullptr) {
        if (!m_server->waitForNewConnection(patienceMs)) {
            return {};
        }
        m_connection = m_server->nextPendingConnection();
    }
    if (m_connection->bytesAvailable() == 0 && !m_connection->waitForReadyRead(patienceMs)) {
        return {};
    }
    return m_connection->readAll();
}

void TestGuardPost::writeIni(const QByteArray &section)
{
    QFile file(m_folder->filePath(QStringLiteral("config/Miravel.ini")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(section);
}

void TestGuardPost::question_isPostedAndItsAcknowledgementPrinted()
{
    start({portArgument(), QStringLiteral("network \"slow\"")});
    QCOMPARE(receive(), document("network \\\"slow\\\""));
    m_connection->write(acknowledgement);
    m_connection->flush();
    QVERIFY(m_program->endsWith(0));
    QCOMPARE(m_program->readAllStandardOutput().trimmed(), acknowledgement);
    QCOMPARE(m_program->readAllStandardError(), QByteArray());
}

void TestGuardPost::severalQuestions_goOutOneAfterTheOther()
{
    start({portArgument(), QStringLiteral("a"), QStringLiteral("b")});
    QCOMPARE(receive(), document("a"));
    m_connection->write(acknowledgement);
    QCOMPARE(receive(), document("b"));
    m_connection->write(acknowledgement);
    m_connection->flush();
    QVERIFY(m_program->endsWith(0));
    QCOMPARE(m_program->readAllStandardOutput().count(acknowledgement), 2);
}

void TestGuardPost::rawFile_goesOutAsItIs()
{
    const QByteArray bytes("\xff\0 {", 4);
    QFile file(m_folder->filePath(QStringLiteral("message")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    file.close();
    start({portArgument(), QStringLiteral("--raw"), file.fileName()});
    QCOMPARE(receive(), bytes);
}

void TestGuardPost::rawInput_goesOutAsItIs()
{
    start({portArgument(), QStringLiteral("--raw=-")}, QByteArrayLiteral("[1]"));
    QCOMPARE(receive(), QByteArrayLiteral("[1]"));
}

void TestGuardPost::portOfAnInstallation_isFound_data()
{
    QTest::addColumn<int>("beyond");
    QTest::addColumn<QString>("place");
    QTest::newRow("folder") << 0 << QString();
    QTest::newRow("file") << 0 << QStringLiteral("/config/Miravel.ini");
    QTest::newRow("out of range, as the assistant takes it") << 65536 << QString();
}

void TestGuardPost::portOfAnInstallation_isFound()
{
    QFETCH(int, beyond);
    QFETCH(QString, place);
    writeIni("[SysguardPort]\nport1=" + QByteArray::number(m_server->serverPort() + beyond) + '\n');
    start({QStringLiteral("--config"), m_folder->path() + place, QStringLiteral("a")});
    QCOMPARE(receive(), document("a"));
}

void TestGuardPost::twoAcknowledgementsAtOnce_countForTwoQuestions()
{
    start({portArgument(), QStringLiteral("a"), QStringLiteral("b")});
    QCOMPARE(receive(), document("a"));
    m_connection->write(acknowledgement + acknowledgement);
    QCOMPARE(receive(), document("b"));
    QVERIFY(m_program->endsWith(0));
}

void TestGuardPost::noAcknowledgement_isStatusOne()
{
    start({portArgument(), QStringLiteral("--timeout=1"), QStringLiteral("a")});
    QCOMPARE(receive(), document("a"));
    QVERIFY(m_program->endsWith(1));
    QCOMPARE(m_program->readAllStandardOutput(), QByteArray());
    QVERIFY(m_program->readAllStandardError().startsWith("guardpost: no acknowledgement"));
}

void TestGuardPost::closedConnection_isStatusOne()
{
    start({portArgument(), QStringLiteral("a")});
    QCOMPARE(receive(), document("a"));
    m_connection->close();
    QVERIFY(m_program->endsWith(1));
    QVERIFY(m_program->readAllStandardError().startsWith("guardpost: the assistant closed"));
}

void TestGuardPost::nobodyListening_isStatusThree()
{
    const QString port = portArgument();
    m_server->close();
    start({port, QStringLiteral("a")});
    QVERIFY(m_program->endsWith(3));
    QVERIFY(m_program->readAllStandardError().startsWith("guardpost: nobody listens"));
}

void TestGuardPost::mistakes_areStatusTwo_data()
{
    QTest::addColumn<QStringList>("arguments");
    const QString port = QStringLiteral("--port=1");
    const QString question = QStringLiteral("a");
    QTest::newRow("nothing") << QStringList();
    QTest::newRow("no port") << QStringList(question);
    QTest::newRow("no question") << QStringList(port);
    QTest::newRow("both places") << QStringList({port, QStringLiteral("--config=x"), question});
    QTest::newRow("port 0") << QStringList({QStringLiteral("--port=0"), question});
    QTest::newRow("port 65536") << QStringList({QStringLiteral("--port=65536"), question});
    QTest::newRow("port that is no number") << QStringList({QStringLiteral("--port=x"), question});
    QTest::newRow("no time") << QStringList({port, QStringLiteral("--timeout=0"), question});
    QTest::newRow("unknown option") << QStringList({port, QStringLiteral("--more"), question});
    QTest::newRow("file that is not there") << QStringList({port, QStringLiteral("--raw=/none")});
    QTest::newRow("installation that is not there")
        << QStringList({QStringLiteral("--config=/none"), question});
}

void TestGuardPost::mistakes_areStatusTwo()
{
    QFETCH(QStringList, arguments);
    start(arguments);
    QVERIFY(m_program->endsWith(2));
    QCOMPARE(m_program->readAllStandardOutput(), QByteArray());
    QVERIFY(m_program->readAllStandardError().startsWith("guardpost: "));
}

void TestGuardPost::settingsWithoutAPort_areStatusTwo_data()
{
    QTest::addColumn<QByteArray>("ini");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("0") << QByteArrayLiteral("[SysguardPort]\nport1=0\n");
    QTest::newRow("text") << QByteArrayLiteral("[SysguardPort]\nport1=guard\n");
}

void TestGuardPost::settingsWithoutAPort_areStatusTwo()
{
    QFETCH(QByteArray, ini);
    writeIni(ini);
    start({QStringLiteral("--config"), m_folder->path(), QStringLiteral("a")});
    QVERIFY(m_program->endsWith(2));
    QVERIFY(m_program->readAllStandardError().contains("SysguardPort/port1"));
}

void TestGuardPost::help_isPrinted()
{
    start({QStringLiteral("--help")});
    QVERIFY(m_program->endsWith(0));
    QVERIFY(m_program->readAllStandardOutput().startsWith("Usage: guardpost"));
}

QTEST_GUILESS_MAIN(TestGuardPost)
#include "tst_guardpost.moc"
