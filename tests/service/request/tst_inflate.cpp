#include "service/request/inflate.h"

#include <QTest>

/// Undoing the compression of a reply.
class TestInflate : public QObject
{
    Q_OBJECT

private slots:
    void compression_isKnownByItsName_data();
    void compression_isKnownByItsName();
    void everyFormat_isTakenBack_data();
    void everyFormat_isTakenBack();
    void cutOff_givesWhatThereIs();
    void rubbish_isBroken_data();
    void rubbish_isBroken();
    void damageInTheMiddle_keepsWhatCameBefore();
    void bytesAfterTheEnd_areLeftOut();
    void limit_isKeptToTheByte_data();
    void limit_isKeptToTheByte();
};

namespace {

constexpr int ample = 1024 * 1024;
constexpr int zlibHeaderBytes = 2;
constexpr int checksumBytes = 4;
constexpr int lengthBytes = 4; // which Qt puts before its own

const QByteArray text = QByteArray("hello ").repeated(8);

QByteArray zlibOf(const QByteArray &bytes)
{
    return qCompress(bytes).mid(lengthBytes);
}

QByteArray bareOf(const QByteArray &bytes)
{
    const QByteArray framed = zlibOf(bytes);
    return framed.mid(zlibHeaderBytes, framed.size() - zlibHeaderBytes - checksumBytes);
}

} // namespace

void TestInflate::compression_isKnownByItsName_data()
{
    QTest::addColumn<QByteArray>("encoding");
    QTest::addColumn<bool>("known");
    QTest::newRow("gzip") << QByteArray("gzip") << true;
    QTest::newRow("deflate") << QByteArray("deflate") << true;
    QTest::newRow("capitals") << QByteArray("GZip") << true;
    QTest::newRow("blanks around") << QByteArray(" gzip ") << true;
    QTest::newRow("no header") << QByteArray() << false;
    QTest::newRow("identity") << QByteArray("identity") << false;
    QTest::newRow("br") << QByteArray("br") << false;
    QTest::newRow("two of them") << QByteArray("gzip, gzip") << false;
}

void TestInflate::compression_isKnownByItsName()
{
    QFETCH(QByteArray, encoding);
    QFETCH(bool, known);
    QCOMPARE(isCompression(encoding), known);
}

void TestInflate::everyFormat_isTakenBack_data()
{
    QTest::addColumn<QByteArray>("compressed");
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray large = QByteArray("0123456789").repeated(100'000);
    QTest::newRow("gzip") << QByteArray::fromHex(
        "1f8b0800000000000203cb48cdc9c957c8209a0400756bb24430000000")
                          << text;
    QTest::newRow("zlib") << QByteArray::fromHex("78dacb48cdc9c957c8209a0400b53711a1") << text;
    QTest::newRow("bare") << QByteArray::fromHex("cb48cdc9c957c8209a0400") << text;
    QTest::newRow("a megabyte") << zlibOf(large) << large;
    QTest::newRow("a bare megabyte") << bareOf(large) << large;
    QTest::newRow("nothing in it") << zlibOf(QByteArray("")) << QByteArray();
    QTest::newRow("no byte") << QByteArray() << QByteArray();
}

void TestInflate::everyFormat_isTakenBack()
{
    QFETCH(QByteArray, compressed);
    QFETCH(QByteArray, bytes);
    const Inflated result = inflated(compressed, ample);
    QCOMPARE(result.end, InflateEnd::Whole);
    QVERIFY(result.bytes == bytes);
}

void TestInflate::cutOff_givesWhatThereIs()
{
    const QByteArray whole = zlibOf(text);
    const Inflated withoutChecksum = inflated(whole.chopped(checksumBytes), ample);
    QCOMPARE(withoutChecksum.bytes, text);
    QCOMPARE(withoutChecksum.end, InflateEnd::Whole);
    for (int size = 0; size < whole.size(); ++size) {
        const Inflated part = inflated(whole.left(size), ample);
        QVERIFY(text.startsWith(part.bytes));
        QCOMPARE(part.end, InflateEnd::Whole);
    }
}

void TestInflate::rubbish_isBroken_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("text") << QByteArray(R"({"errorCode":"0"})");
    QTest::newRow("all bits") << QByteArray(100, '\xff');
    QTest::newRow("zlib that wants a dictionary") << QByteArray::fromHex("78bb00000001cb48");
}

void TestInflate::rubbish_isBroken()
{
    QFETCH(QByteArray, bytes);
    const Inflated result = inflated(bytes, ample);
    QCOMPARE(result.end, InflateEnd::Broken);
    QCOMPARE(result.bytes, QByteArray());
}

void TestInflate::damageInTheMiddle_keepsWhatCameBefore()
{
    QByteArray damaged = zlibOf(text);
    damaged[damaged.size() - 1] = static_cast<char>(damaged.at(damaged.size() - 1) ^ 1);
    const Inflated result = inflated(damaged, ample);
    QCOMPARE(result.end, InflateEnd::Broken);
    QCOMPARE(result.bytes, text);
}

void TestInflate::bytesAfterTheEnd_areLeftOut()
{
    const Inflated result = inflated(zlibOf(text) + zlibOf(text) + "rubbish", ample);
    QCOMPARE(result.end, InflateEnd::Whole);
    QCOMPARE(result.bytes, text);
}

void TestInflate::limit_isKeptToTheByte_data()
{
    QTest::addColumn<int>("size");
    QTest::newRow("a few bytes") << 10;
    QTest::newRow("one piece") << 64 * 1024;
    QTest::newRow("some pieces") << 200'000;
}

void TestInflate::limit_isKeptToTheByte()
{
    QFETCH(int, size);
    const QByteArray compressed = zlibOf(QByteArray(size, 'x'));
    const Inflated fits = inflated(compressed, size);
    QCOMPARE(fits.end, InflateEnd::Whole);
    QCOMPARE(fits.bytes.size(), size);
    const Inflated tooLong = inflated(compressed, size - 1);
    QCOMPARE(tooLong.end, InflateEnd::TooLong);
    QCOMPARE(tooLong.bytes.size(), 0);
}

QTEST_GUILESS_MAIN(TestInflate)
#include "tst_inflate.moc"
