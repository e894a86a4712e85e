#include "demoprocess.h"
#include "signedcall.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>

/// How the demo service starts, or says why it does not.
class TestDemoCommandLine : public QObject
{
    Q_OBJECT

private slots:
    void help_listsTheOptions();
    void badOption_endsWithStatus2AndASentence_data();
    void badOption_endsWithStatus2AndASentence();
    void badKnowledge_endsWithStatus2AndASentence_data();
    void badKnowledge_endsWithStatus2AndASentence();
    void pictureThatIsNone_endsWithStatus2();
    void portInUse_endsWithStatus1();
    void ownCredentialsPathsAndSkew_areUsed();
    void ownCertificate_isShownToTheClient();
};

namespace {

constexpr int exitFailed = 1;
constexpr int exitBadInput = 2;

const QString knowledgeOption = QStringLiteral("--knowledge");

bool write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

} // namespace

void TestDemoCommandLine::help_listsTheOptions()
{
    QProcess process;
    process.start(QStringLiteral(DEMOSERVICE_PROGRAM), {QStringLiteral("--help")});
    QVERIFY(process.waitForFinished(10000));
    QCOMPARE(process.exitCode(), 0);
    const QByteArray text = process.readAllStandardOutput();
    for (const char *option : {"--knowledge", "--http-port", "--https-port", "--ports-file",
                               "--fault", "--max-skew-ms"}) {
        QVERIFY2(text.contains(option), option);
    }
}

void TestDemoCommandLine::badOption_endsWithStatus2AndASentence_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("sentence");
    const auto row = [](const char *name, const QString &arguments, const char *sentence) {
        QTest::newRow(name) << arguments.split(QLatin1Char(' ')) << QString::fromLatin1(sentence);
    };
    const QString good = knowledgeOption + QLatin1Char(' ') + DemoProcess::knowledgeFile();
    row("no knowledge", QStringLiteral("--http-port 0"), "--knowledge FILE is needed");
    row("unknown", QStringLiteral("--colour blue"), "unknown option \"--colour\"");
    row("no value", QStringLiteral("--knowledge"), "needs a value");
    row("port too high", good + QStringLiteral(" --http-port 65536"), "--http-port:");
    row("port no number", good + QStringLiteral(" --https-port x"), "--https-port:");
    row("skew of nothing", good + QStringLiteral(" --max-skew-ms 0"), "--max-skew-ms:");
    row("fault without kind", good + QStringLiteral(" --fault ask"), "CALL=KIND");
    row("fault of no call", good + QStringLiteral(" --fault cold=empty"), "CALL=KIND");
    row("no such fault", good + QStringLiteral(" --fault ask=lie"), "there is no fault");
    row("status too low", good + QStringLiteral(" --fault ask=http:99"), "does not fit");
    row("path without slash", good + QStringLiteral(" --ask-path ask"), "slash");
    row("two equal paths", good + QStringLiteral(" --ask-path /a --hot-path /a"), "must differ");
    row("certificate alone", good + QStringLiteral(" --cert a.pem"), "belong together");
    row("certificate missing",
        good + QStringLiteral(" --https-port 0 --cert /nowhere.pem --cert-key /nowhere.key"),
        "certificate");
    row("log in no folder", good + QStringLiteral(" --log /nowhere/requests.log"),
        "/nowhere/requests.log cannot be written");
}

void TestDemoCommandLine::badOption_endsWithStatus2AndASentence()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, sentence);
    QString error;
    QCOMPARE(DemoProcess::runToEnd(arguments, error), exitBadInput);
    QVERIFY2(error.contains(sentence), qPrintable(error));
}

void TestDemoCommandLine::badKnowledge_endsWithStatus2AndASentence_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("sentence");
    const auto row = [](const char *name, const QByteArray &content, const char *sentence) {
        QTest::newRow(name) << content << QString::fromLatin1(sentence);
    };
    const auto entries = [](const QByteArray &list) {
        return "{\"entries\":[" + list + "]}";
    };
    const QByteArray one = R"({"id":1,"question":"a","reply":"<p>b</p>"})";
    row("no JSON", "entries", "is not a JSON object");
    row("no entries", "{}", "is not a JSON object");
    row("entry no object", entries("3"), "entry number 1");
    row("no question", entries(R"({"id":1,"reply":"x"})"), "question");
    row("id 0", entries(R"({"id":0,"question":"a","reply":"x"})"), "the id is not above 0");
    row("empty reply", entries(R"({"id":1,"question":"a","reply":""})"), "the reply is empty");
    row("same id twice", entries(one + "," + one), "the id 1 is there twice");
    row("recommends nobody", entries(R"({"id":1,"question":"a","reply":"x","recommends":[2]})"),
        "recommends 2");
    row("unknown member", entries(R"({"id":1,"question":"a","reply":"x","colour":1})"), "colour");
    row("hot but not understood",
        entries(R"({"id":1,"question":"a","reply":"x","hot":true,"noHit":true})"), "hot");
    row("picture missing", entries(R"({"id":1,"question":"a","reply":"{{picture:x.png}}"})"),
        "x.png cannot be read");
    row("picture elsewhere", entries(R"({"id":1,"question":"a","reply":"{{picture:../x.png}}"})"),
        "not a plain file name");
}

void TestDemoCommandLine::badKnowledge_endsWithStatus2AndASentence()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, sentence);
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("knowledge.json"));
    QVERIFY(write(path, content));
    QString error;
    QCOMPARE(DemoProcess::runToEnd({knowledgeOption, path}, error), exitBadInput);
    QVERIFY2(error.contains(sentence) && error.contains(path), qPrintable(error));
    QCOMPARE(
        DemoProcess::runToEnd({knowledgeOption, folder.filePath(QStringLiteral("no.json"))}, error),
        exitBadInput);
    QVERIFY2(error.contains(QLatin1String("cannot be read")), qPrintable(error));
}

void TestDemoCommandLine::pictureThatIsNone_endsWithStatus2()
{
    QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir(QStringLiteral("pictures")));
    QVERIFY(write(folder.filePath(QStringLiteral("pictures/x.png")), "no picture"));
    const QString path = folder.filePath(QStringLiteral("knowledge.json"));
    QVERIFY(write(path, R"({"entries":[{"id":1,"question":"a","reply":"{{picture:x.png}}"}]})"));
    QString error;
    QCOMPARE(DemoProcess::runToEnd({knowledgeOption, path}, error), exitBadInput);
    QVERIFY2(error.contains(QLatin1String("no PNG, JPEG or GIF")), qPrintable(error));
}

void TestDemoCommandLine::portInUse_endsWithStatus1()
{
    QTcpServer other;
    QVERIFY(other.listen(QHostAddress::LocalHost));
    QString error;
    QCOMPARE(
        DemoProcess::runToEnd({knowledgeOption, DemoProcess::knowledgeFile(),
                               QStringLiteral("--http-port"), QString::number(other.serverPort())},
                              error),
        exitFailed);
    QVERIFY2(error.contains(QLatin1String("port")), qPrintable(error));
    DemoProcess first;
    QVERIFY(first.start());
    QCOMPARE(
        DemoProcess::runToEnd({knowledgeOption, DemoProcess::knowledgeFile(),
                               QStringLiteral("--http-port"), QString::number(first.httpPort())},
                              error),
        exitFailed);
}

void TestDemoCommandLine::ownCredentialsPathsAndSkew_areUsed()
{
    DemoProcess service;
    QVERIFY(service.start({QStringLiteral("--tenant"), QStringLiteral("t"), QStringLiteral("--key"),
                           QStringLiteral("k"), QStringLiteral("--secret"), QStringLiteral("s"),
                           QStringLiteral("--hot-path"), QStringLiteral("/a.b/(hot)"),
                           QStringLiteral("--max-skew-ms"), QStringLiteral("2000000000")}));
    SignedCall call;
    call.tenant = "t";
    call.key = "k";
    call.secret = "s";
    call.timestamp = QByteArray::number(QDateTime::currentMSecsSinceEpoch() - 1900000000);
    const QByteArray body = compactJson(hotBody());
    QCOMPARE(sendSigned(service.httpUrl(QStringLiteral("/a.b/(hot)")), body, call).status, 200);
    QCOMPARE(sendSigned(service.httpUrl(QStringLiteral("/aXb/hot")), body, call).status, 404);
}

void TestDemoCommandLine::ownCertificate_isShownToTheClient()
{
    if (QStandardPaths::findExecutable(QStringLiteral("openssl")).isEmpty()) {
        QSKIP("the program openssl, which makes the certificate, is not installed");
    }
    QTemporaryDir folder;
    const QString certificate = folder.filePath(QStringLiteral("cert.pem"));
    const QString key = folder.filePath(QStringLiteral("key.pem"));
    QProcess maker;
    maker.start(QStringLiteral("openssl"),
                {QStringLiteral("req"), QStringLiteral("-x509"), QStringLiteral("-newkey"),
                 QStringLiteral("rsa:2048"), QStringLiteral("-nodes"), QStringLiteral("-subj"),
                 QStringLiteral("/CN=own.example"), QStringLiteral("-keyout"), key,
                 QStringLiteral("-out"), certificate});
    QVERIFY(maker.waitForFinished(30000));
    QCOMPARE(maker.exitCode(), 0);
    DemoProcess service;
    QVERIFY(
        service.start({QStringLiteral("--cert"), certificate, QStringLiteral("--cert-key"), key}));
    const CallReply reply = sendSigned(service.httpsUrl(hotPath), compactJson(hotBody()));
    QCOMPARE(reply.status, 200);
    QCOMPARE(reply.peer.subjectInfo(QSslCertificate::CommonName),
             QStringList{QStringLiteral("own.example")});
}

QTEST_GUILESS_MAIN(TestDemoCommandLine)
#include "tst_democommandline.moc"
