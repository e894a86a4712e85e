#include "service/request/replybody.h"
#include "tests/service/support/requestbench.h"
#include "tests/ui/support/guicost.h"

#include <QTest>

/// A service that means harm, or somebody in its place: what it sends costs bounded memory and the
/// one request, and makes the program do nothing else.
class TestHostileService : public QObject
{
    Q_OBJECT

private slots:
    void redirect_isNeverFollowed_data();
    void redirect_isNeverFollowed();
    void logInOfTheUser_isNeverTried_data();
    void logInOfTheUser_isNeverTried();
    void endlessBody_isGivenUp_data();
    void endlessBody_isGivenUp();
    void bodyOfTheLongestLength_isHandedOver();
    void compressedBody_isTakenBack_data();
    void compressedBody_isTakenBack();
    void compressedBodyOfALength_thatIsTooLong_isGivenUp();
    void brokenCompression_isNamed_data();
    void brokenCompression_isNamed();
    void oddReply_endsWithinItsRequest_data();
    void oddReply_endsWithinItsRequest();
    void endlessHead_endsWithTheTimeLimit_data();
    void endlessHead_endsWithTheTimeLimit();

private:
    static void verifyUsable(RequestBench &bench);
};

namespace {

constexpr int limitMs = 20'000;

// 64 KiB of nothing, compressed: the beginning, and what can follow it any number of times.
const QByteArray bombBegin = QByteArray::fromHex(
    "78daecc101010000008090feafee080a00000000000000000000000000000000000000000000000000000000000000"
    "00000000000000000000000000000000000000000000000000000000006a000000ffff");
const QByteArray bombGoesOn = bombBegin.mid(2);

const QByteArray goodBody = R"({"errorCode":"0","result":[1]})";
const QByteArray headBegin = "HTTP/1.1 200 OK\r\n";

QByteArray compressedReply(const QByteArray &encoding, const QByteArray &body)
{
    return headBegin + "Content-Encoding: " + encoding
         + "\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
}

} // namespace

/// The next request on the same settings has a good reply.
void TestHostileService::verifyUsable(RequestBench &bench)
{
    bench.server.setReply(httpReply(goodBody));
    const SentRequest next = bench.post("/next", limitMs);
    QCOMPARE(next.result, 0);
    QCOMPARE(next.reply, goodBody);
}

void TestHostileService::redirect_isNeverFollowed_data()
{
    QTest::addColumn<QByteArray>("status");
    QTest::addColumn<QByteArray>("target");
    for (const char *status :
         {"300 Multiple Choices", "301 Moved Permanently", "302 Found", "303 See Other",
          "307 Temporary Redirect", "308 Permanent Redirect"}) {
        QTest::newRow(status) << QByteArray(status) << QByteArray("http://127.0.0.1:%1/elsewhere");
    }
    const QByteArray found("302 Found");
    QTest::newRow("the same service") << found << QByteArray("/elsewhere");
    QTest::newRow("no scheme") << found << QByteArray("//127.0.0.1:%1/elsewhere");
    QTest::newRow("other scheme") << found << QByteArray("https://127.0.0.1:%1/");
    QTest::newRow("a file") << found << QByteArray("file:///etc/passwd");
    QTest::newRow("data") << found << QByteArray("data:,hello");
    QTest::newRow("no address") << found << QByteArray("http://[");
    QTest::newRow("nothing") << found << QByteArray();
}

void TestHostileService::redirect_isNeverFollowed()
{
    QFETCH(QByteArray, status);
    QFETCH(QByteArray, target);
    const TestServer other;
    target.replace("%1", QByteArray::number(other.port()));
    RequestBench bench;
    bench.server.setReply(
        {"HTTP/1.1 " + status + "\r\nLocation: " + target + "\r\nContent-Length: 4\r\n\r\nbody",
         false});
    const SentRequest sent = bench.post("/a", limitMs);
    QCOMPARE(sent.result, 0);
    QCOMPARE(sent.reply, QByteArray("body"));
    QCOMPARE(other.connectionCount(), 0);
    QCOMPARE(bench.server.requests().size(), 1);
    verifyUsable(bench);
}

void TestHostileService::logInOfTheUser_isNeverTried_data()
{
    QTest::addColumn<QByteArray>("status");
    QTest::addColumn<QByteArray>("challenge");
    const QByteArray service = "401 Unauthorized\r\nWWW-Authenticate: ";
    QTest::newRow("NTLM") << service << QByteArray("NTLM");
    QTest::newRow("Negotiate") << service << QByteArray("Negotiate");
    QTest::newRow("Basic") << service << QByteArray("Basic realm=\"a\"");
    QTest::newRow("Digest") << service << QByteArray("Digest realm=\"a\", nonce=\"b\"");
    QTest::newRow("as a proxy, NTLM")
        << QByteArray("407 Proxy Authentication Required\r\nProxy-Authenticate: ")
        << QByteArray("NTLM");
}

void TestHostileService::logInOfTheUser_isNeverTried()
{
    QFETCH(QByteArray, status);
    QFETCH(QByteArray, challenge);
    RequestBench bench;
    bench.server.setReply(
        {"HTTP/1.1 " + status + challenge + "\r\nContent-Length: 0\r\n\r\n", false});
    QCOMPARE(bench.post("/a", limitMs).result, 0);
    QCOMPARE(bench.server.requests().size(), 1);
    QVERIFY(!bench.server.requests().constFirst().headerNames().contains("Authorization"));
    verifyUsable(bench);
}

void TestHostileService::endlessBody_isGivenUp_data()
{
    QTest::addColumn<QByteArray>("begin");
    QTest::addColumn<QByteArray>("goesOn");
    const QByteArray piece(256 * 1024, 'x');
    QTest::newRow("until the connection ends") << headBegin + "\r\n" << piece;
    QTest::newRow("of a promised length") << headBegin + "Content-Length: 9000000000000\r\n\r\n"
                                          << piece;
    QTest::newRow("in chunks") << headBegin + "Transfer-Encoding: chunked\r\n\r\n"
                               << "40000\r\n" + piece + "\r\n";
    QTest::newRow("with an error's status") << QByteArray("HTTP/1.1 500 No\r\n\r\n") << piece;
    QTest::newRow("compressed") << headBegin + "Content-Encoding: deflate\r\n\r\n" + bombBegin
                                << bombGoesOn.repeated(4000);
}

void TestHostileService::endlessBody_isGivenUp()
{
#ifdef Q_OS_WIN
    QSKIP("So many bytes take minutes under Wine; no line of that code differs.");
#endif
    QFETCH(QByteArray, begin);
    QFETCH(QByteArray, goesOn);
    RequestBench bench;
    bench.server.setReply({begin, false, {}, goesOn});
    resetPeakMemory();
    const qint64 before = peakMemoryMb();
    const SentRequest sent = bench.post("/a", 4 * limitMs);
    QCOMPARE(sent.result, 0);
    QCOMPARE(sent.reply, QByteArray());
    QVERIFY(bench.log.lines().contains(
        QStringLiteral("warning: reply is longer than 134217728 bytes, it is given up.")));
    QCOMPARE(bench.log.lines().constLast(),
             QStringLiteral("warning: https reply error:OperationCanceledError"));
    if (begin.contains("deflate")) {
        // How far Qt's own thread reads ahead of this one is not ours, what is inflated is.
        constexpr int mayBeHeldMb = 2 * longestReplyBody / 1024 / 1024;
        QVERIFY2(peakMemoryMb() - before < mayBeHeldMb,
                 qPrintable(QString::number(peakMemoryMb() - before)));
    }
    verifyUsable(bench);
}

void TestHostileService::bodyOfTheLongestLength_isHandedOver()
{
#ifdef Q_OS_WIN
    QSKIP("So many bytes take minutes under Wine; no line of that code differs.");
#endif
    RequestBench bench;
    bench.server.setReply(httpReply(QByteArray(longestReplyBody, 'x')));
    const SentRequest whole = bench.post("/a", 4 * limitMs);
    QCOMPARE(whole.result, 0);
    QCOMPARE(whole.reply.size(), longestReplyBody);
    bench.server.setReply(httpReply(QByteArray(longestReplyBody + 1, 'x')));
    const SentRequest tooLong = bench.post("/a", 4 * limitMs);
    QCOMPARE(tooLong.result, 0);
    QCOMPARE(tooLong.reply.size(), 0);
    verifyUsable(bench);
}

void TestHostileService::compressedBody_isTakenBack_data()
{
    QTest::addColumn<QByteArray>("encoding");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QByteArray>("reply");
    const QByteArray text = QByteArray("hello ").repeated(8);
    const QByteArray zlib = QByteArray::fromHex("78dacb48cdc9c957c8209a0400b53711a1");
    QTest::newRow("gzip") << QByteArray(
        "gzip") << QByteArray::fromHex("1f8b0800000000000203cb48cdc9c957c8209a0400756bb24430000000")
                          << text;
    QTest::newRow("deflate") << QByteArray("deflate") << zlib << text;
    QTest::newRow("in capitals") << QByteArray("DEFLATE") << zlib << text;
    QTest::newRow("unknown") << QByteArray("br") << zlib << zlib;
    QTest::newRow("none, said so") << QByteArray("identity") << goodBody << goodBody;
}

void TestHostileService::compressedBody_isTakenBack()
{
    QFETCH(QByteArray, encoding);
    QFETCH(QByteArray, body);
    QFETCH(QByteArray, reply);
    RequestBench bench;
    bench.server.setReply({compressedReply(encoding, body), false});
    const SentRequest sent = bench.post("/a", limitMs);
    QCOMPARE(sent.result, 0);
    QCOMPARE(sent.reply, reply);
    QCOMPARE(bench.sentHeader("Accept-Encoding"), QByteArray("gzip, deflate"));
}

void TestHostileService::compressedBodyOfALength_thatIsTooLong_isGivenUp()
{
    RequestBench bench;
    const QByteArray body = bombBegin + bombGoesOn.repeated(4000);
    QVERIFY(body.size() < 1024 * 1024);
    bench.server.setReply({compressedReply("deflate", body), false});
    const SentRequest sent = bench.post("/a", limitMs);
    QCOMPARE(sent.result, 0);
    QCOMPARE(sent.reply, QByteArray());
    QVERIFY(bench.log.lines().contains(
        QStringLiteral("warning: reply is longer than 134217728 bytes, it is given up.")));
    QCOMPARE(bench.log.lines().constLast(),
             QStringLiteral("warning: https reply error:OperationCanceledError"));
    verifyUsable(bench);
}

void TestHostileService::brokenCompression_isNamed_data()
{
    QTest::addColumn<QByteArray>("status");
    QTest::addColumn<QString>("error");
    QTest::newRow("alone") << QByteArray("200 OK") << QStringLiteral("ProtocolFailure");
    QTest::newRow("of a reply that is an error")
        << QByteArray("503 No") << QStringLiteral("ServiceUnavailableError");
}

void TestHostileService::brokenCompression_isNamed()
{
    QFETCH(QByteArray, status);
    QFETCH(QString, error);
    RequestBench bench;
    bench.server.setReply({compressedReply("gzip", goodBody).replace("200 OK", status), false});
    const SentRequest sent = bench.post("/a", limitMs);
    QCOMPARE(sent.result, 0);
    QCOMPARE(sent.reply, QByteArray());
    QCOMPARE(bench.log.lines().constLast(), QStringLiteral("warning: https reply error:") + error);
    verifyUsable(bench);
}

void TestHostileService::oddReply_endsWithinItsRequest_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const auto row = [](const char *name, const QByteArray &bytes) {
        QTest::newRow(name) << bytes;
    };
    const QByteArray chunked = headBegin + "Transfer-Encoding: chunked\r\n\r\n";
    const QByteArray good = headBegin + "Content-Length: 2\r\n\r\nhi";
    row("100 first", "HTTP/1.1 100 Continue\r\n\r\n" + good);
    row("100, twenty times", QByteArray("HTTP/1.1 100 Continue\r\n\r\n").repeated(20) + good);
    row("101", "HTTP/1.1 101 Switching Protocols\r\nUpgrade: x\r\n\r\n" + good);
    row("103 first", "HTTP/1.1 103 Early Hints\r\nLink: </a>\r\n\r\n" + good);
    row("204 with a body", "HTTP/1.1 204 No Content\r\nContent-Length: 2\r\n\r\nhi");
    row("304", "HTTP/1.1 304 Not Modified\r\n\r\n");
    row("599", "HTTP/1.1 599 \r\nContent-Length: 2\r\n\r\nhi");
    row("status 0", "HTTP/1.1 000 \r\nContent-Length: 2\r\n\r\nhi");
    row("status of ten digits", "HTTP/1.1 9999999999 \r\nContent-Length: 2\r\n\r\nhi");
    row("no status", "HTTP/1.1\r\nContent-Length: 2\r\n\r\nhi");
    row("other protocol", "SSH-2.0-x\r\n\r\n");
    row("HTTP/9.9", "HTTP/9.9 200 OK\r\nContent-Length: 2\r\n\r\nhi");
    row("two replies", good + good);
    row("negative length", headBegin + "Content-Length: -1\r\n\r\nhi");
    row("length that is no number", headBegin + "Content-Length: many\r\n\r\nhi");
    row("length over 64 bits", headBegin + "Content-Length: 99999999999999999999\r\n\r\nhi");
    row("length too short", headBegin + "Content-Length: 1\r\n\r\nhi");
    row("two lengths", headBegin + "Content-Length: 1\r\nContent-Length: 2\r\n\r\nhi");
    row("length and chunks",
        headBegin + "Content-Length: 1\r\nTransfer-Encoding: chunked\r\n\r\n2\r\nhi\r\n0\r\n\r\n");
    row("chunk over 64 bits", chunked + "fffffffffffffffff\r\nhi\r\n");
    row("chunk of -1", chunked + "ffffffffffffffff\r\nhi\r\n");
    row("chunk that is no number", chunked + "zz\r\nhi\r\n");
    row("chunk that is cut off", chunked + "400000\r\nhi");
#ifndef Q_OS_WIN // a head is read byte by byte, which takes minutes under Wine
    row("5,000 headers", headBegin + QByteArray("X-Header: xxxxxxxxxxxxxxxxxxxx\r\n").repeated(5000)
                             + "Content-Length: 2\r\n\r\nhi");
    row("a header of a megabyte",
        headBegin + "X-A: " + QByteArray(1024 * 1024, 'x') + "\r\nContent-Length: 2\r\n\r\nhi");
#endif
    row("headers without a colon", headBegin + "a\r\nb\r\n\r\nhi");
    row("NUL in the head",
        headBegin + QByteArray("X-A: a\0b\r\n", 10) + "Content-Length: 2\r\n\r\nhi");
    row("cookies", headBegin + "Set-Cookie: a=b\r\nContent-Length: 2\r\n\r\nhi");
    row("only line ends", QByteArray("\r\n").repeated(50));
    row("compressed nothing", headBegin + "Content-Encoding: gzip\r\nContent-Length: 0\r\n\r\n");
}

void TestHostileService::oddReply_endsWithinItsRequest()
{
    QFETCH(QByteArray, bytes);
    RequestBench bench;
    bench.server.setReply({bytes, false});
    const SentRequest sent = bench.post("/a", limitMs);
    QCOMPARE(sent.result, 0);
    QVERIFY(sent.reply.size() <= 8);
    QVERIFY(!bench.log.lines().contains(QStringLiteral("warning: HTTPS request timeout.")));
    verifyUsable(bench);
    QVERIFY(!bench.server.requests().constLast().headerNames().contains("Cookie"));
}

void TestHostileService::endlessHead_endsWithTheTimeLimit_data()
{
    QTest::addColumn<QByteArray>("begin");
    QTest::addColumn<QByteArray>("goesOn");
    QTest::newRow("headers") << headBegin << QByteArray("X-A: b\r\n").repeated(1000);
    QTest::newRow("one header") << headBegin + "X-A: " << QByteArray(65536, 'x');
    QTest::newRow("100") << QByteArray()
                         << QByteArray("HTTP/1.1 100 Continue\r\n\r\n").repeated(1000);
    QTest::newRow("length of a chunk") << headBegin + "Transfer-Encoding: chunked\r\n\r\n"
                                       << QByteArray(65536, '1');
}

void TestHostileService::endlessHead_endsWithTheTimeLimit()
{
    QFETCH(QByteArray, begin);
    QFETCH(QByteArray, goesOn);
    RequestBench bench;
    bench.server.setReply({begin, false, {}, goesOn});
    const SentRequest sent = bench.post("/a", 1000);
    QCOMPARE(sent.result, -1);
    QCOMPARE(sent.reply, QByteArray("before"));
    verifyUsable(bench);
}

QTEST_MAIN(TestHostileService)
#include "tst_hostileservice.moc"
