#include "tests/support/logcapture.h"
#include "ui/answer/picture/picturedecoder.h"
#include "ui/answer/picture/picturestore.h"

#include <QBuffer>
#include <QElapsedTimer>
#include <QImageWriter>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

/// Pictures that are decoded on a thread of their own.
class TestPictureDecoder : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void picturesForRows_comeInOrder_scaled();
    void animation_fillsItsRow();
    void brokenPicture_hasNoSize_withAWarning();
    void noData_haveNoSize_withoutAWarning();
    void hurriedPicture_comesBeforeThoseThatWait();
    void wholePicture_comesBeforeThoseThatWait();
    void wholePictureThatIsNoLongerWanted_isNotDecoded();
    void manyPictures_withTheStoreInUse();
    void end_doesNotWaitForALargePicture();

private:
    [[nodiscard]] static QByteArray encoded(const QSize &size, const char *format = "PNG");

    QTemporaryDir m_folder;
    std::unique_ptr<PictureStore> m_store;
    std::unique_ptr<PictureDecoder> m_decoder;
    QVector<int> m_order;
    QVector<RowPicture> m_pictures;
};

void TestPictureDecoder::init()
{
    m_store = std::make_unique<PictureStore>(m_folder.path());
    m_decoder = std::make_unique<PictureDecoder>(*m_store);
    m_order.clear();
    m_pictures.clear();
    connect(m_decoder.get(), &PictureDecoder::rowDecoded, this,
            [this](int number, const RowPicture &picture) {
                m_order.append(number);
                m_pictures.append(picture);
            });
}

void TestPictureDecoder::cleanup()
{
    m_decoder.reset();
    m_store.reset();
}

QByteArray TestPictureDecoder::encoded(const QSize &size, const char *format)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::darkCyan);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, format);
    writer.setProgressiveScanWrite(true);
    writer.write(image);
    return bytes;
}

void TestPictureDecoder::picturesForRows_comeInOrder_scaled()
{
    m_store->add(encoded({1920, 1080}));
    m_store->add(encoded({1600, 200}, "JPEG"));
    m_store->add(encoded({20, 10}));
    for (int number = 0; number < 3; ++number) {
        m_decoder->decodeForRow(number, false, 1, PictureDecoder::Turn::Last);
    }
    QTRY_COMPARE(m_order, (QVector<int>{0, 1, 2}));
    QCOMPARE(m_pictures.at(0).size, QSize(1920, 1080));
    QCOMPARE(m_pictures.at(0).shown.size(), QSize(195, 110));
    QCOMPARE(m_pictures.at(1).size, QSize(1600, 200));
    QCOMPARE(m_pictures.at(1).shown.size(), QSize(430, 53));
    QCOMPARE(m_pictures.at(2).shown.size(), QSize(20, 10));
    QCOMPARE(m_pictures.at(2).shown.pixelColor(3, 3), QColor(Qt::darkCyan));
}

void TestPictureDecoder::animation_fillsItsRow()
{
    m_store->add(encoded({1600, 200}));
    m_decoder->decodeForRow(0, true, 1, PictureDecoder::Turn::Last);
    QTRY_COMPARE(m_order.size(), 1);
    QCOMPARE(m_pictures.first().shown.size(), QSize(430, 110));
}

void TestPictureDecoder::brokenPicture_hasNoSize_withAWarning()
{
    const LogCapture log;
    m_store->add(encoded({200, 100}).left(60));
    m_decoder->decodeForRow(0, false, 1, PictureDecoder::Turn::Last);
    QTRY_COMPARE(m_order.size(), 1);
    QVERIFY(!m_pictures.first().size.isValid());
    QVERIFY(m_pictures.first().shown.isNull());
    QCOMPARE(log.linesWith(QStringLiteral("warning: picture cannot be read")).size(), 1);
}

void TestPictureDecoder::noData_haveNoSize_withoutAWarning()
{
    const LogCapture log;
    m_store->add(QByteArray());
    m_decoder->decodeForRow(0, false, 1, PictureDecoder::Turn::Last);
    QTRY_COMPARE(m_order.size(), 1);
    QVERIFY(!m_pictures.first().size.isValid());
    QCOMPARE(log.lines(), QStringList());
}

void TestPictureDecoder::hurriedPicture_comesBeforeThoseThatWait()
{
    const QByteArray data = encoded({800, 600});
    for (int number = 0; number < 30; ++number) {
        m_store->add(data);
        m_decoder->decodeForRow(number, false, 1, PictureDecoder::Turn::Last);
    }
    m_decoder->hurry(29);
    QTRY_COMPARE(m_order.size(), 30);
    QVERIFY(m_order.indexOf(29) < 29);
    m_order.removeOne(29);
    for (int number = 0; number < 29; ++number) {
        QCOMPARE(m_order.at(number), number);
    }
}

void TestPictureDecoder::wholePicture_comesBeforeThoseThatWait()
{
    const QByteArray data = encoded({800, 600});
    for (int number = 0; number < 30; ++number) {
        m_store->add(data);
        m_decoder->decodeForRow(number, false, 1, PictureDecoder::Turn::Last);
    }
    QImage whole;
    int before = -1;
    connect(m_decoder.get(), &PictureDecoder::wholeDecoded, this,
            [&](int number, PictureDecoder::Purpose purpose) {
                QCOMPARE(number, 7);
                QCOMPARE(purpose, PictureDecoder::Purpose::Clipboard);
                before = m_order.size();
                whole = m_decoder->takeWhole();
            });
    m_decoder->decodeWhole(7, PictureDecoder::Purpose::Clipboard);
    QTRY_COMPARE(whole.size(), QSize(800, 600));
    QVERIFY(before < 30);
    QTRY_COMPARE(m_order.size(), 30);
}

void TestPictureDecoder::wholePictureThatIsNoLongerWanted_isNotDecoded()
{
    m_store->add(encoded({4000, 4000}));
    m_decoder->decodeForRow(0, false, 1, PictureDecoder::Turn::Last); // keeps the thread busy
    QSignalSpy whole(m_decoder.get(), &PictureDecoder::wholeDecoded);
    const QByteArray small = encoded({20, 20});
    for (int number = 1; number < 20; ++number) {
        m_store->add(small);
        m_decoder->decodeWhole(number, PictureDecoder::Purpose::Preview);
    }
    QTRY_VERIFY(!whole.isEmpty() && whole.last().first().toInt() == 19);
    QVERIFY(whole.size() < 19);
}

void TestPictureDecoder::manyPictures_withTheStoreInUse()
{
    m_store
        = std::make_unique<PictureStore>(m_folder.path(), PictureStore::Limits{500, 1000000, 0});
    m_decoder = std::make_unique<PictureDecoder>(*m_store);
    int good = 0;
    connect(m_decoder.get(), &PictureDecoder::rowDecoded, this,
            [&good](int number, const RowPicture &picture) {
                good += picture.size == QSize(20 + number, 10) ? 1 : 0;
            });
    for (int number = 0; number < 100; ++number) {
        m_store->add(encoded({20 + number, 10}));
        m_decoder->decodeForRow(number, false, 1, PictureDecoder::Turn::Last);
    }
    QTRY_COMPARE(good, 100);
}

void TestPictureDecoder::end_doesNotWaitForALargePicture()
{
    // Its data are gone through ten times.
    const QByteArray data = encoded({3000, 3000}, "JPEG");
    QElapsedTimer clock;
    clock.start();
    QVERIFY(!decodeImage(data).isNull());
    const qint64 all = clock.elapsed();
    for (int number = 0; number < 30; ++number) {
        m_store->add(data);
        m_decoder->decodeForRow(number, false, 1, PictureDecoder::Turn::Last);
    }
    QTRY_VERIFY(!m_order.isEmpty()); // the next is being decoded
    clock.start();
    m_decoder.reset();
    const qint64 end = clock.elapsed();
    qInfo("one picture: %lld ms, the end: %lld ms", all, end);
    QVERIFY(end < 3 * all); // thirty wait
}

QTEST_MAIN(TestPictureDecoder)
#include "tst_picturedecoder.moc"
