#include "tests/support/logcapture.h"
#include "tests/ui/support/pngchecksum.h"
#include "ui/answer/picture/picturereading.h"

#include <QBuffer>
#include <QTest>
#include <QtEndian>

/// Which pictures are decoded: their size is known before.
class TestPictureReading : public QObject
{
    Q_OBJECT

private slots:
    void sizes_data();
    void sizes();
    void eightBitsAColour_takeFourBytesAPixel();
    void sixteenBitsAColour_takeEightBytesAPixel();
    void progressiveScans_areGoneThroughOneByOne();
    void animationWithoutACanvas_hasNoSize_data();
    void animationWithoutACanvas_hasNoSize();
};

namespace {

/// A PNG of one pixel in \a format whose header claims \a size.
QByteArray pngThatClaims(const QSize &size, QImage::Format format)
{
    QImage pixel(1, 1, format);
    pixel.fill(Qt::red);
    QBuffer buffer;
    pixel.save(&buffer, "PNG");
    QByteArray data = buffer.data();
    qToBigEndian<quint32>(static_cast<quint32>(size.width()), data.data() + 16);
    qToBigEndian<quint32>(static_cast<quint32>(size.height()), data.data() + 20);
    data.replace(29, 4, pngChecksum(data.mid(12, 17)));
    return data;
}

/// Whether a picture that claims this is refused for its size, before its pixels are read.
bool isRefused(const QSize &size, QImage::Format format)
{
    const LogCapture log;
    (void)decodeImage(pngThatClaims(size, format));
    return log.lines().contains(QStringLiteral("warning: picture is too large: %1x%2")
                                    .arg(size.width())
                                    .arg(size.height()));
}

} // namespace

void TestPictureReading::sizes_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<bool>("decodable");
    QTest::newRow("a pixel") << QSize(1, 1) << true;
    QTest::newRow("nothing") << QSize(0, 0) << false;
    QTest::newRow("unknown") << QSize() << false;
    QTest::newRow("no height") << QSize(10, 0) << false;
    QTest::newRow("256 MiB") << QSize(8192, 8192) << true;
    QTest::newRow("a row more") << QSize(8192, 8193) << false;
    QTest::newRow("256 MiB in a column") << QSize(1, 67'108'864) << true;
    QTest::newRow("a pixel more") << QSize(1, 67'108'865) << false;
    QTest::newRow("too many for 32 bits") << QSize(65'536, 65'536) << false;
}

void TestPictureReading::sizes()
{
    QFETCH(QSize, size);
    QFETCH(bool, decodable);
    QCOMPARE(isDecodable(size), decodable);
}

void TestPictureReading::eightBitsAColour_takeFourBytesAPixel()
{
    QVERIFY(isRefused({8193, 8192}, QImage::Format_RGB32));
    QVERIFY(!isRefused({4096, 8193}, QImage::Format_RGB32));
}

void TestPictureReading::sixteenBitsAColour_takeEightBytesAPixel()
{
    QVERIFY(isRefused({4096, 8193}, QImage::Format_RGBA64));
    QVERIFY(!isRefused({2048, 8193}, QImage::Format_RGBA64));
}

void TestPictureReading::progressiveScans_areGoneThroughOneByOne()
{
    const QByteArray scan = QByteArray::fromHex("ffda");
    const QByteArray jpeg = QByteArray::fromHex("ffd8");
    QCOMPARE(decodingCost(jpeg + scan, {10, 20}), qint64(200));
    QCOMPARE(decodingCost(jpeg + scan + scan + scan, {10, 20}), qint64(600));
    QCOMPARE(decodingCost(jpeg, {10, 20}), qint64(200));
    QCOMPARE(decodingCost(scan + scan, {10, 20}), qint64(200)); // no JPEG
    QCOMPARE(decodingCost(jpeg + scan, QSize()), qint64(0));
}

void TestPictureReading::animationWithoutACanvas_hasNoSize_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QSize>("size");
    QTest::newRow("whole") << QByteArray("GIF89a\x02\x00\x03\x01", 10) << QSize(2, 259);
    QTest::newRow("a byte less") << QByteArray("GIF89a\x02\x00\x03", 9) << QSize();
    QTest::newRow("only its beginning") << QByteArray("GIF8") << QSize();
}

void TestPictureReading::animationWithoutACanvas_hasNoSize()
{
    QFETCH(QByteArray, data);
    QFETCH(QSize, size);
    QCOMPARE(pictureSize(data), size);
}

QTEST_MAIN(TestPictureReading)
#include "tst_picturereading.moc"
