#include "service/diagnosis/pingoutput.h"

#include <QTest>

namespace {

constexpr int untouched = -7;
constexpr int hundredMegabytes = 100'000'000;

const QString windowsChinese
    = QStringLiteral("\r\n正在 Ping www.miravel.example [10.1.2.3] 具有 32 字节的数据:\r\n"
                     "来自 10.1.2.3 的回复: 字节=32 时间=12ms TTL=118\r\n"
                     "\r\n10.1.2.3 的 Ping 统计信息:\r\n"
                     "    数据包: 已发送 = 1，已接收 = 1，丢失 = 0 (0% 丢失)，\r\n"
                     "往返行程的估计时间(以毫秒为单位):\r\n"
                     "    最短 = 11ms，最长 = 13ms，平均 = 12ms\r\n");

const QString windowsEnglish
    = QStringLiteral("\r\nPinging www.miravel.example [203.0.113.9] with 32 bytes of data:\r\n"
                     "Reply from 203.0.113.9: bytes=32 time=12ms TTL=118\r\n"
                     "\r\nPing statistics for 203.0.113.9:\r\n"
                     "    Packets: Sent = 1, Received = 1, Lost = 0 (0% loss),\r\n"
                     "Approximate round trip times in milli-seconds:\r\n"
                     "    Minimum = 12ms, Maximum = 12ms, Average = 12ms\r\n");

const QString windowsNumeric
    = QStringLiteral("\r\n正在 Ping 8.8.8.8 具有 32 字节的数据:\r\n"
                     "来自 8.8.8.8 的回复: 字节=32 时间<1ms TTL=64\r\n"
                     "    数据包: 已发送 = 1，已接收 = 1，丢失 = 0 (0% 丢失)，\r\n"
                     "    最短 = 0ms，最长 = 0ms，平均 = 0ms\r\n");

const QString windowsTimedOut
    = QStringLiteral("\r\n正在 Ping it.miravel.example [10.9.9.9] 具有 32 字节的数据:\r\n"
                     "请求超时。\r\n\r\n10.9.9.9 的 Ping 统计信息:\r\n"
                     "    数据包: 已发送 = 1，已接收 = 0，丢失 = 1 (100% 丢失)，\r\n");

const QString windowsUnreachable
    = QStringLiteral("\r\nPinging 10.9.9.9 with 32 bytes of data:\r\n"
                     "Reply from 10.0.0.1: Destination host unreachable.\r\n"
                     "    Packets: Sent = 1, Received = 1, Lost = 0 (0% loss),\r\n");

const QString windowsUnknownHost
    = QStringLiteral("Ping 请求找不到主机 it.miravel.example。请检查该名称，然后重试。\r\n");

const QString wineNumeric = QStringLiteral("Pinging 8.8.8.8 [8.8.8.8] with 32 bytes of data:\r\n"
                                           "Reply from 8.8.8.8: bytes=32 time=3ms TTL=115\r\n"
                                           "\r\nPing statistics for 8.8.8.8\r\n"
                                           "\tPackets: Sent = 1, Received = 1, Lost = 0 (0% loss)");

const QString linuxForm
    = QStringLiteral("PING 8.8.8.8 (8.8.8.8) 56(84) bytes of data.\n"
                     "64 bytes from 8.8.8.8: icmp_seq=1 ttl=115 time=3.41 ms\n"
                     "\n--- 8.8.8.8 ping statistics ---\n"
                     "1 packets transmitted, 1 received, 0% packet loss, time 0ms\n"
                     "rtt min/avg/max/mdev = 3.411/3.411/3.411/0.000 ms\n");

struct Summary
{
    QString address = QStringLiteral("before");
    int averageMs = untouched;
    int lossPercent = untouched;
};

Summary summaryOf(const QString &output)
{
    Summary summary;
    parsePingOutput(output, summary.address, &summary.averageMs, &summary.lossPercent);
    return summary;
}

} // namespace

/// Reading what the ping program prints.
class TestPingOutput : public QObject
{
    Q_OBJECT

private slots:
    void answer_isTold_data();
    void answer_isTold();
    void address_isTakenFromTheBrackets_data();
    void address_isTakenFromTheBrackets();
    void outputWithoutBrackets_becomesTheAddressWhole_data();
    void outputWithoutBrackets_becomesTheAddressWhole();
    void average_isReadAfterTheLabel_data();
    void average_isReadAfterTheLabel();
    void loss_isReadBetweenBracketAndPercent_data();
    void loss_isReadBetweenBracketAndPercent();
    void noPlaceForTheLoss_leavesItUnparsed();
    void hundredMegabytes_areRead();
};

void TestPingOutput::answer_isTold_data()
{
    QTest::addColumn<QString>("output");
    QTest::addColumn<bool>("answered");
    QTest::newRow("Windows, Chinese") << windowsChinese << true;
    QTest::newRow("Windows, English") << windowsEnglish << true;
    QTest::newRow("Windows, numeric host") << windowsNumeric << true;
    QTest::newRow("Wine") << wineNumeric << true;
    QTest::newRow("Linux") << linuxForm << true;
    QTest::newRow("TTL= alone") << QStringLiteral("TTL=") << true;
    QTest::newRow("ttl= in lower case") << QStringLiteral("ttl=1") << true;
    QTest::newRow("Chinese time alone") << QStringLiteral("时间=1ms") << true;
    QTest::newRow("time= alone") << QStringLiteral("time=1ms") << true;
    QTest::newRow("Time= in mixed case") << QStringLiteral("Time=1ms") << true;
    QTest::newRow("under a millisecond without TTL")
        << QStringLiteral("时间<1ms time<1ms") << false;
    QTest::newRow("TTL with a blank") << QStringLiteral("TTL = 64") << false;
    QTest::newRow("timed out") << windowsTimedOut << false;
    QTest::newRow("unreachable by a router's word") << windowsUnreachable << false;
    QTest::newRow("unknown host") << windowsUnknownHost << false;
    QTest::newRow("nothing") << QString() << false;
}

void TestPingOutput::answer_isTold()
{
    QFETCH(QString, output);
    QFETCH(bool, answered);
    QCOMPARE(pingAnswered(output), answered);
}

void TestPingOutput::address_isTakenFromTheBrackets_data()
{
    QTest::addColumn<QString>("output");
    QTest::addColumn<QString>("address");
    QTest::newRow("Chinese") << windowsChinese << QStringLiteral("10.1.2.3");
    QTest::newRow("English") << windowsEnglish << QStringLiteral("203.0.113.9");
    QTest::newRow("Wine's brackets round a numeric host")
        << wineNumeric << QStringLiteral("8.8.8.8");
    QTest::newRow("IPv6") << QStringLiteral("Ping h [2001:db8::1] TTL=")
                          << QStringLiteral("2001:db8::1");
    QTest::newRow("the first pair") << QStringLiteral("[a] [b]") << QStringLiteral("a");
    QTest::newRow("empty brackets") << QStringLiteral("h [] x") << QString();
    QTest::newRow("never closed") << QStringLiteral("h [10.1 x") << QStringLiteral("10.1 x");
    QTest::newRow("never opened") << QStringLiteral("h 10.1] x") << QStringLiteral("h 10.1");
    QTest::newRow("closed before opened") << QStringLiteral("a] b [c d") << QStringLiteral("c d");
}

void TestPingOutput::address_isTakenFromTheBrackets()
{
    QFETCH(QString, output);
    QFETCH(QString, address);
    QCOMPARE(summaryOf(output).address, address);
}

void TestPingOutput::outputWithoutBrackets_becomesTheAddressWhole_data()
{
    QTest::addColumn<QString>("output");
    QTest::newRow("Windows, numeric host") << windowsNumeric;
    QTest::newRow("Linux") << linuxForm;
    QTest::newRow("nothing") << QString();
}

void TestPingOutput::outputWithoutBrackets_becomesTheAddressWhole()
{
    QFETCH(QString, output);
    QCOMPARE(summaryOf(output).address, output);
    QVERIFY(!summaryOf(output).address.startsWith(QStringLiteral("10.")));
}

void TestPingOutput::average_isReadAfterTheLabel_data()
{
    QTest::addColumn<QString>("output");
    QTest::addColumn<int>("averageMs");
    QTest::newRow("Chinese summary") << windowsChinese << 12;
    QTest::newRow("zero") << windowsNumeric << 0;
    QTest::newRow("the summary's end alone") << QStringLiteral("平均 = 12ms") << 12;
    QTest::newRow("a thousand and more") << QStringLiteral("平均 = 1234ms") << 1234;
    QTest::newRow("up to the last ms") << QStringLiteral("平均 = 12ms, 13ms") << 0;
    QTest::newRow("from the first label") << QStringLiteral("平均 = 1, 平均 = 2ms") << 0;
    QTest::newRow("five characters on, whatever they are") << QStringLiteral("平均: ab7ms") << 0;
    QTest::newRow("three other characters after the label") << QStringLiteral("平均：  7ms") << 7;
    QTest::newRow("no blanks") << QStringLiteral("平均=12ms") << 0;
    QTest::newRow("ms only before the label") << QStringLiteral("3ms 平均 = 12") << 12;
    QTest::newRow("no ms at all") << QStringLiteral("平均 = 12") << 12;
    QTest::newRow("label at the very end") << QStringLiteral("1ms 平均") << 0;
    QTest::newRow("English: no label") << windowsEnglish << 0;
    QTest::newRow("no label, a number where one would be looked for")
        << QStringLiteral("abcd12ms") << 0;
    QTest::newRow("nothing") << QString() << 0;
}

void TestPingOutput::average_isReadAfterTheLabel()
{
    QFETCH(QString, output);
    QFETCH(int, averageMs);
    QCOMPARE(summaryOf(output).averageMs, averageMs);
}

void TestPingOutput::loss_isReadBetweenBracketAndPercent_data()
{
    QTest::addColumn<QString>("output");
    QTest::addColumn<int>("lossPercent");
    QTest::newRow("none lost") << windowsChinese << 0;
    QTest::newRow("all lost") << windowsTimedOut << 100;
    QTest::newRow("English") << windowsEnglish << 0;
    QTest::newRow("some lost") << QStringLiteral("Lost = 1 (25% loss)") << 25;
    QTest::newRow("bracket missing: unchanged") << QStringLiteral("25% loss") << untouched;
    QTest::newRow("percent missing: unchanged")
        << QStringLiteral("Lost = 1 (25 loss)") << untouched;
    QTest::newRow("no number between") << linuxForm << 0;
    QTest::newRow("percent before bracket") << QStringLiteral("5% (x") << 0;
    QTest::newRow("nothing: unchanged") << QString() << untouched;
}

void TestPingOutput::loss_isReadBetweenBracketAndPercent()
{
    QFETCH(QString, output);
    QFETCH(int, lossPercent);
    QCOMPARE(summaryOf(output).lossPercent, lossPercent);
}

void TestPingOutput::noPlaceForTheLoss_leavesItUnparsed()
{
    Summary summary;
    parsePingOutput(windowsChinese, summary.address, &summary.averageMs, nullptr);
    QCOMPARE(summary.address, QStringLiteral("10.1.2.3"));
    QCOMPARE(summary.averageMs, 12);
    QCOMPARE(summary.lossPercent, untouched);
}

void TestPingOutput::hundredMegabytes_areRead()
{
    const QString output = QString(hundredMegabytes, u't') + windowsChinese;
    QVERIFY(pingAnswered(output));
    QVERIFY(!pingAnswered(QString(hundredMegabytes, u't')));
    QCOMPARE(summaryOf(output).address, QStringLiteral("10.1.2.3"));
    QCOMPARE(summaryOf(output).averageMs, 12);
}

QTEST_GUILESS_MAIN(TestPingOutput)
#include "tst_pingoutput.moc"
