#include "tests/ui/support/pngchecksum.h"
#include "ui/answer/content/answercontent.h"
#include "ui/answer/picture/base64.h"
#include "ui/answer/picture/conversationpictures.h"
#include "ui/answer/picture/inlinepicture.h"
#include "ui/answer/picture/picturerow.h"

#include <QBuffer>
#include <QDir>
#include <QLabel>
#include <QMovie>
#include <QPainter>
#include <QPushButton>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

/// Pictures inside answers: reading, sizes, rows.
class TestInlinePictures : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void labelSize_data();
    void labelSize();
    void pixelsOfAScreen_haveRoomInThePlace();
    void data_endAtTheQuoteBeforeTheStyle();
    void base64_isReadAsTheToolkitReadsIt_data();
    void base64_isReadAsTheToolkitReadsIt();
    void everyFormat_isRead_data();
    void everyFormat_isRead();
    void noPicture_isNull_withAWarning();
    void truncatedPicture_isNullOrWhole_neverACrash();
    void absurdSizeInTheHeader_isRefusedBeforeDecoding();
    void wideStillPicture_isScaledIntoItsBox();
    void smallStillPicture_keepsItsSize();
    void thinStillPictures_keepARow();
    void nullPicture_makesARowOf4Pixels();
    void answerRows_textAndPictures();
    void animation_isWrittenAndPlays();
    void animation_whoseFileCannotBeWritten_isWarnedOf();

private:
    [[nodiscard]] static QByteArray encoded(const QImage &image, const char *format);
    [[nodiscard]] static QString tag(const QByteArray &data, const char *type);
    [[nodiscard]] static QByteArray twoFrameGif();

    /// The row that shows \a pixmap as a still picture.
    [[nodiscard]] PictureRow *stillRow(const QPixmap &pixmap);

    std::unique_ptr<PictureRow> m_row;

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_before;
};

void TestInlinePictures::init()
{
    m_before = QDir::currentPath();
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    QDir::setCurrent(m_folder->path());
}

void TestInlinePictures::cleanup()
{
    QDir::setCurrent(m_before);
    m_folder.reset();
}

QByteArray TestInlinePictures::encoded(const QImage &image, const char *format)
{
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, format)) {
        qFatal("The toolkit cannot write %s", format);
    }
    return data;
}

QString TestInlinePictures::tag(const QByteArray &data, const char *type)
{
    return QStringLiteral("<p><img src=\"data:image/%1;base64,%2\" style=\"max-width:100%\"/></p>")
        .arg(QLatin1String(type), QLatin1String(data.toBase64()));
}

PictureRow *TestInlinePictures::stillRow(const QPixmap &pixmap)
{
    const QByteArray bytes = pixmap.isNull() ? "none" : encoded(pixmap.toImage(), "PNG");
    m_row = std::make_unique<PictureRow>(nullptr);
    m_row->setPlace(pixmap.size(), false);
    m_row->showStill(QPixmap::fromImage(decodeForRow(bytes, false, 1).shown));
    m_row->fitToPicture(m_row->label()->width());
    return m_row.get();
}

QByteArray TestInlinePictures::twoFrameGif()
{
    // GIF89a, 2 x 2 px, two frames of one colour each, shown for 20 ms each, for ever.
    return QByteArray::fromHex("47494638396102000200810000ff00000000ff00000000000021ff0b4e455453"
                               "43415045322e30030100000021f90400020000002c0000000002000200000806"
                               "0001080410100021f90400020000002c0000000002000200810000ff00000000"
                               "00000000000806000108041010003b");
}

void TestInlinePictures::labelSize_data()
{
    QTest::addColumn<QSize>("picture");
    QTest::addColumn<QSize>("label");
    QTest::newRow("800 x 200") << QSize(800, 200) << QSize(430, 110);
    QTest::newRow("100 x 50") << QSize(100, 50) << QSize(100, 50);
    QTest::newRow("1 x 1") << QSize(1, 1) << QSize(1, 1);
    QTest::newRow("1 x 5000") << QSize(1, 5000) << QSize(0, 110);
    QTest::newRow("20000 x 10") << QSize(20000, 10) << QSize(430, 10);
    QTest::newRow("110 high") << QSize(90, 110) << QSize(90, 110);
    QTest::newRow("111 high") << QSize(111, 111) << QSize(110, 110);
    QTest::newRow("truncated width") << QSize(100, 300) << QSize(36, 110);
    QTest::newRow("no height") << QSize(100, 0) << QSize(0, 0);
    QTest::newRow("null") << QSize() << QSize(0, 0);
}

void TestInlinePictures::labelSize()
{
    QFETCH(QSize, picture);
    QFETCH(QSize, label);
    QCOMPARE(pictureLabelSize(picture), label);
}

void TestInlinePictures::pixelsOfAScreen_haveRoomInThePlace()
{
    QCOMPARE(sizeOnScreen({165, 110}, 1), QSize(165, 110));
    QCOMPARE(sizeOnScreen({165, 110}, 1.25), QSize(206, 137));
    QCOMPARE(sizeOnScreen({100, 20}, 1.15), QSize(115, 23)); // which is less in binary
    QCOMPARE(sizeOnScreen({430, 1}, 1.5), QSize(645, 1));
    QCOMPARE(sizeOnScreen({0, 0}, 2), QSize(1, 1));
}

void TestInlinePictures::data_endAtTheQuoteBeforeTheStyle()
{
    const auto textOf = [](const QString &piece) {
        return inlinePictureText(piece).toString();
    };
    const QString tag = QStringLiteral("<img src=\"data:image/png;base64,%1");
    const QString text = QStringLiteral("aGVsbG8=");
    QCOMPARE(textOf(tag.arg(text) + QLatin1String("\" style=\"a\"/>")), text);
    const QString other = QStringLiteral("\" alt=\"abcd");
    QCOMPARE(textOf(tag.arg(text) + other + QLatin1String("\" style=\"a\">")), text + other);
    QCOMPARE(textOf(tag.arg(text) + QLatin1String("\"  style=\"a\"/>base64,QQ==\" style=\"\"")),
             text + QLatin1String("\"  style=\"a\"/>"));
    QCOMPARE(textOf(tag.arg(text)), text);
    QCOMPARE(textOf(QStringLiteral("<img src=\"data:image/svg+xml,x\">")), QString());
}

void TestInlinePictures::base64_isReadAsTheToolkitReadsIt_data()
{
    QTest::addColumn<QString>("text");
    for (const char *text :
         {"", "A", "AB", "ABC", "ABCD", "ABCDE", "TWFu", "TWE=", "TQ==", "TW\nFu", " T W F u ",
          "TWFu====TWFu", "TQ==TWFu", "!!!!", "_-_-", "T!WFuTWFu", "/+/+/+8="}) {
        QTest::newRow(text) << QString::fromLatin1(text);
    }
    QTest::newRow("outside of ASCII") << QStringLiteral("TW像Fu素TWFu\u00ffTWFu");
    QTest::newRow("NUL") << QString(QStringLiteral("TWFu") + QChar(QChar::Null)
                                    + QStringLiteral("TWFu"));
    QByteArray all;
    for (int i = 0; i < 1000; ++i) {
        all.append(static_cast<char>(i * i * 7 + i));
    }
    QTest::newRow("long") << QString::fromLatin1(all.toBase64());
    QTest::newRow("long, foreign in between")
        << QString::fromLatin1(all.toBase64()).replace(QLatin1Char('A'), QStringLiteral("\r\n"));
}

void TestInlinePictures::base64_isReadAsTheToolkitReadsIt()
{
    QFETCH(QString, text);
    QCOMPARE(bytesOfBase64(QStringRef(&text)), QByteArray::fromBase64(text.toLatin1()));
}

void TestInlinePictures::everyFormat_isRead_data()
{
    QTest::addColumn<QByteArray>("data");
    QImage image(60, 40, QImage::Format_RGB32);
    image.fill(Qt::blue);
    for (const char *format : {"PNG", "JPEG", "BMP"}) {
        QTest::newRow(format) << encoded(image, format);
    }
}

void TestInlinePictures::everyFormat_isRead()
{
    QFETCH(QByteArray, data);
    QCOMPARE(decodePicture(data).size(), QSize(60, 40));
}

void TestInlinePictures::noPicture_isNull_withAWarning()
{
    QTest::ignoreMessage(QtWarningMsg,
                         QRegularExpression(QStringLiteral("^picture cannot be read")));
    QVERIFY(decodePicture("no picture at all").isNull());
    QTest::ignoreMessage(QtWarningMsg,
                         QRegularExpression(QStringLiteral("^picture cannot be read")));
    QVERIFY(decodePicture(QByteArray()).isNull());
}

void TestInlinePictures::truncatedPicture_isNullOrWhole_neverACrash()
{
    QImage image(64, 64, QImage::Format_RGB32);
    image.fill(Qt::red);
    const QByteArray data = encoded(image, "PNG");
    for (int size = 0; size < data.size(); size += 23) {
        const QPixmap pixmap = decodePicture(data.left(size));
        QVERIFY(pixmap.isNull() || pixmap.size() == image.size());
    }
}

void TestInlinePictures::absurdSizeInTheHeader_isRefusedBeforeDecoding()
{
    QImage image(8, 8, QImage::Format_RGB32);
    image.fill(Qt::red);
    QByteArray data = encoded(image, "PNG");
    // The header chunk of a PNG file: type at byte 12, width and height from 16, checksum at 29.
    data.replace(16, 8, QByteArray::fromHex("00004e2000004e20"));
    data.replace(29, 4, pngChecksum(data.mid(12, 17)));
    QTest::ignoreMessage(QtWarningMsg, "picture is too large: 20000x20000");
    QVERIFY(decodePicture(data).isNull());
}

void TestInlinePictures::wideStillPicture_isScaledIntoItsBox()
{
    QPixmap pixmap(800, 200);
    pixmap.fill(Qt::green);
    const PictureRow &row = *stillRow(pixmap);
    QCOMPARE(row.label()->geometry(), QRect(0, 4, 430, 107));
    QCOMPARE(row.button()->geometry(), QRect(0, 4, 430, 107));
    QCOMPARE(row.size(), QSize(446, 111));
    QCOMPARE(row.label()->pixmap(Qt::ReturnByValue).size(), QSize(430, 107));
}

void TestInlinePictures::smallStillPicture_keepsItsSize()
{
    QPixmap pixmap(100, 50);
    pixmap.fill(Qt::green);
    const PictureRow &row = *stillRow(pixmap);
    QCOMPARE(row.label()->geometry(), QRect(0, 4, 100, 50));
    QCOMPARE(row.size(), QSize(446, 54));
}

void TestInlinePictures::thinStillPictures_keepARow()
{
    QPixmap tall(1, 5000);
    tall.fill(Qt::green);
    QCOMPARE(stillRow(tall)->width(), 446);
    QPixmap flat(20000, 10);
    flat.fill(Qt::green);
    const PictureRow &row = *stillRow(flat);
    QCOMPARE(row.label()->width(), 430);
    QVERIFY(row.height() >= 5);
}

void TestInlinePictures::nullPicture_makesARowOf4Pixels()
{
    const PictureRow &row = *stillRow(QPixmap());
    QCOMPARE(row.size(), QSize(446, 4));
}

void TestInlinePictures::answerRows_textAndPictures()
{
    QImage image(100, 50, QImage::Format_RGB32);
    image.fill(Qt::yellow);
    ConversationPictures pictures;
    QWidget bubble;
    const AnswerContent content(QStringLiteral("<p>上</p>") + tag(encoded(image, "PNG"), "png")
                                    + QStringLiteral("<p>下</p>"),
                                QStringLiteral("标题"), pictures, &bubble);
    QCOMPARE(content.count(), 3);
    QCOMPARE(content.paragraphs().size(), 2);
    QCOMPARE(content.pictureRows().size(), 1);
    QCOMPARE(content.contentHeight(),
             content.paragraphs().at(0)->height() + 54 + content.paragraphs().at(1)->height());
    QCOMPARE(pictures.count(), 1);
    QCOMPARE(pictures.at(0).title, QStringLiteral("标题"));
    QCOMPARE(pictures.at(0).size, QSize(100, 50));
    QCOMPARE(pictures.decoded(0).size(), QSize(100, 50));
    QVERIFY(!pictures.at(0).isAnimated);
    QVERIFY(!QFile::exists(QStringLiteral("gif")));
}

void TestInlinePictures::animation_isWrittenAndPlays()
{
    const QByteArray gif = twoFrameGif();
    ConversationPictures pictures;
    qint64 costLeft = 0;
    for (int number = 0; number < 3; ++number) {
        (void)pictures.add(gif, QString(), true, 1, costLeft);
    }
    QWidget bubble;
    const AnswerContent content(tag(gif, "gif"), QString(), pictures, &bubble);
    QFile file(QStringLiteral("gif/3.gif"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), gif);
    QVERIFY(pictures.at(3).isAnimated);
    QCOMPARE(pictures.at(3).size, QSize(2, 2));
    const PictureRow *row = content.pictureRows().at(0);
    QCOMPARE(row->size(), QSize(446, 6));
    QVERIFY(row->label()->hasScaledContents());
    const QMovie *movie = row->label()->movie();
    QCOMPARE(movie->state(), QMovie::Running);
    QTRY_COMPARE(movie->currentFrameNumber(), 1);
}

void TestInlinePictures::animation_whoseFileCannotBeWritten_isWarnedOf()
{
    QVERIFY(QDir().mkpath(QStringLiteral("gif/0.gif")));
    ConversationPictures pictures;
    QWidget bubble;
    QTest::ignoreMessage(QtWarningMsg, "open file fail");
    const AnswerContent content(tag(twoFrameGif(), "gif"), QString(), pictures, &bubble);
    QCOMPARE(content.pictureRows().size(), 1);
    QCOMPARE(content.contentHeight(), 6);
}

QTEST_MAIN(TestInlinePictures)
#include "tst_inlinepictures.moc"
