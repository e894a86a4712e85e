#include "app/base/apppaths.h"
#include "resources/resources.h"
#include "tests/support/logcapture.h"
#include "tests/ui/support/pngchecksum.h"
#include "ui/answer/bubble/answeritem.h"
#include "ui/answer/bubble/foldbar.h"
#include "ui/answer/content/answercontent.h"
#include "ui/answer/conversationcopier.h"
#include "ui/answer/picture/picturerow.h"
#include "ui/answer/qaregion.h"
#include "ui/preview/imagedisplay.h"

#include <QBuffer>
#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QMovie>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

#ifdef __GLIBC__
#include <malloc.h>
#endif

/// Pictures of answers that are none, or too many, or too large: each keeps its row and its number.
class TestHostilePictures : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void unreadable_makesARowOf4Pixels_withAWarning_data();
    void unreadable_makesARowOf4Pixels_withAWarning();
    void jpegOfUnknownFormat_readsNoForeignMemory_data();
    void jpegOfUnknownFormat_readsNoForeignMemory();
    void bmpOfPixelsOutsideOfIt_readsNoForeignMemory_data();
    void bmpOfPixelsOutsideOfIt_readsNoForeignMemory();
    void brokenBehindALargeHeader_endsWithARowOf4Pixels_withAWarning();
    void brokenBehindLargeHeaders_unfoldAnAnswer_thatIsNotTall();
    void brokenBehindALargeHeader_leavesAnOpenedAnswerOpen();
    void of16BitsAColour_countsTwice();
    void unreadable_keepsItsNumber();
    void unreadable_isCopiedAsNothing();
    void unreadable_canBePreviewed();
    void unreadableAnimation_isWrittenAndHasNoFrames();
    void animationOfAnAbsurdSize_isNeverDecoded();
    void inSingleQuotes_isRead();
    void withoutAClosingQuote_isRead();
    void twoInOnePiece_showTheFirst();
    void twoHundredInOneAnswer_haveTheirRows();
    void fiveMegabytesOfBase64_areRead();

private:
    const AnswerItem &show(const QString &reply);
    [[nodiscard]] static QByteArray encoded(const QSize &size, const char *format);
    [[nodiscard]] static QByteArray broken();
    [[nodiscard]] static QString tag(const QByteArray &data);

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QARegion> m_region;
};

void TestHostilePictures::initTestCase()
{
    initResources();
    initAppPaths(QString());
}

void TestHostilePictures::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QDir::setCurrent(m_folder->path());
    m_region = std::make_unique<QARegion>();
    m_region->show();
}

void TestHostilePictures::cleanup()
{
    m_region.reset();
    QDir::setCurrent(QDir::tempPath());
    m_folder.reset();
}

const AnswerItem &TestHostilePictures::show(const QString &reply)
{
    m_region->showAnswer(QStringLiteral("标题"), reply);
    return *m_region->findChildren<AnswerItem *>().last();
}

QByteArray TestHostilePictures::encoded(const QSize &size, const char *format)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::darkCyan);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes;
}

/// The first half of a picture that is too large to be decoded at once.
QByteArray TestHostilePictures::broken()
{
    const QByteArray data = encoded({2000, 1000}, "PNG");
    return data.left(data.size() / 2);
}

QString TestHostilePictures::tag(const QByteArray &data)
{
    return QStringLiteral("<p><img src=\"data:image/png;base64,%1\" style=\"\"/></p>")
        .arg(QLatin1String(data.toBase64()));
}

void TestHostilePictures::unreadable_makesARowOf4Pixels_withAWarning_data()
{
    QTest::addColumn<QString>("reply");
    const QByteArray png = encoded({20, 20}, "PNG");
    const QString good = QLatin1String(png.toBase64());
    const auto row = [](const char *name, const QString &reply) {
        QTest::newRow(name) << reply;
    };
    row("no picture", tag("hello"));
    row("nothing", tag(QByteArray()));
    row("header only", tag(png.left(8)));
    row("GIF of no size", tag(QByteArray::fromHex("474946383961000000008000003b")));
    row("BMP of no size",
        tag(QByteArray::fromHex("424d36000000000000003600000028000000000000000000000001001800"
                                "000000000000000000000000000000000000000000000000")));
    row("no Base64 in it", QStringLiteral("<p><img src=\"data:image/png;base64,!!!!\"/></p>"));
    row("no Base64 mark", QStringLiteral("<p><img src=\"data:image/png,%1\"/></p>").arg(good));
    row("cut after the mark", QStringLiteral("<p><img src=\"data:image/png;base64,"));
    row("scrambled Base64",
        QStringLiteral("<p><img src=\"data:image/png;base64,x%1\"/></p>").arg(good));
}

void TestHostilePictures::unreadable_makesARowOf4Pixels_withAWarning()
{
    QFETCH(QString, reply);
    const LogCapture log;
    const AnswerItem &answer = show(reply);
    QCOMPARE(answer.content()->pictureRows().size(), 1);
    QCOMPARE(answer.content()->pictureRows().first()->size(), QSize(446, 4));
    QCOMPARE(answer.content()->contentHeight(), 4);
    QCOMPARE(log.linesWith(QStringLiteral("warning: picture cannot be read")).size(), 1);
}

void TestHostilePictures::jpegOfUnknownFormat_readsNoForeignMemory_data()
{
    QTest::addColumn<QByteArray>("data");
    const QByteArray start = QByteArray::fromHex("ffd8");
    const QByteArray table = QByteArray::fromHex("ffdb004300") + QByteArray(64, 1);
    QTest::newRow("header that ends early") << start + table + QByteArray::fromHex("f6c0");
    // A frame of 16 x 16 px and its scan, of two components each (ITU T.81, B.2).
    QTest::newRow("two colours") << start + table
                                        + QByteArray::fromHex("ffc0000e0800100010"
                                                              "02011100021100"
                                                              "ffda000a0201000200003f00ffd9");
}

/// Qt then names a pixel format that nobody has set.
void TestHostilePictures::jpegOfUnknownFormat_readsNoForeignMemory()
{
    QFETCH(QByteArray, data);
#ifdef __GLIBC__
    mallopt(M_PERTURB, 0x5a); // what nobody has set is then far from any format
#endif
    const LogCapture log;
    const AnswerItem &answer = show(tag(data));
    QTRY_COMPARE(answer.content()->contentHeight(), 4);
    QCOMPARE(log.linesWith(QStringLiteral("warning: picture cannot be read")).size(), 1);
#ifdef __GLIBC__
    mallopt(M_PERTURB, 0);
#endif
}

void TestHostilePictures::bmpOfPixelsOutsideOfIt_readsNoForeignMemory_data()
{
    QTest::addColumn<QByteArray>("place");
    QTest::newRow("just behind its end") << QByteArray::fromHex("70000000");
    QTest::newRow("far behind its end") << QByteArray::fromHex("06000030");
    QTest::newRow("before its start") << QByteArray::fromHex("060000f0");
    QTest::newRow("as far as there is") << QByteArray::fromHex("ffffff7f");
}

void TestHostilePictures::bmpOfPixelsOutsideOfIt_readsNoForeignMemory()
{
    QFETCH(QByteArray, place);
    constexpr int placeOfThePixels = 10; // in the header, four bytes, the least first
    const QByteArray data = encoded({4, 4}, "BMP").replace(placeOfThePixels, place.size(), place);
    const AnswerItem &answer = show(tag(data));
    QTRY_COMPARE(answer.content()->contentHeight() > 4, !QImage::fromData(data).isNull());
}

void TestHostilePictures::brokenBehindALargeHeader_endsWithARowOf4Pixels_withAWarning()
{
    const LogCapture log;
    const AnswerItem &answer = show(tag(broken()) + tag(encoded({30, 20}, "PNG")));
    const PictureRow *row = answer.content()->pictureRows().first();
    const int others = answer.height() - answer.content()->contentHeight();
    QCOMPARE(row->size(), QSize(446, 114)); // what the header says
    QTRY_COMPARE(row->size(), QSize(446, 4));
    QCOMPARE(answer.content()->contentHeight(), 4 + 24);
    QCOMPARE(answer.content()->item(0)->sizeHint(), row->size());
    QCOMPARE(answer.height(), others + 4 + 24);
    QCOMPARE(log.linesWith(QStringLiteral("warning: picture cannot be read")).size(), 1);
    m_region->picture_preview(0);
    m_region->qaRightHitMenu_copySlots(0, ConversationCopier::Picture);
    QVERIFY(QApplication::clipboard()->pixmap().isNull());
    QCOMPARE(log.linesWith(QStringLiteral("warning: picture cannot be read")).size(), 1);
}

void TestHostilePictures::brokenBehindLargeHeaders_unfoldAnAnswer_thatIsNotTall()
{
    const AnswerItem &answer = show(tag(broken()) + tag(broken()));
    QCOMPARE(answer.size(), QSize(648, 230));
    QTRY_COMPARE(answer.content()->contentHeight(), 8);
    QCOMPARE(answer.height(), answer.titleLabel()->height() + 8 + 68);
    const auto bars = answer.findChildren<FoldBar *>();
    QCOMPARE(bars.size(), 2);
    QVERIFY(!bars.at(0)->isVisible());
    QVERIFY(!bars.at(1)->isVisible());
}

void TestHostilePictures::brokenBehindALargeHeader_leavesAnOpenedAnswerOpen()
{
    const AnswerItem &answer = show(tag(broken()) + QStringLiteral("<p>一行文字</p>").repeated(20));
    m_region->FoldToOpen_answer(0);
    const int before = answer.height();
    QTRY_COMPARE(answer.content()->pictureRows().first()->height(), 4);
    QCOMPARE(answer.height(), before - 110);
}

void TestHostilePictures::of16BitsAColour_countsTwice()
{
    // The header of a PNG of 6,000 x 6,000 px: 137 MiB at 8 bits a colour, 275 MiB at 16.
    QImage image(1, 1, QImage::Format_RGBA64);
    image.fill(Qt::transparent);
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QIODevice::WriteOnly);
    QVERIFY(image.save(&buffer, "PNG"));
    QCOMPARE(int(data.at(24)), 16);
    data.replace(16, 8, QByteArray::fromHex("0000177000001770"));
    data.replace(29, 4, pngChecksum(data.mid(12, 17)));
    const LogCapture log;
    const AnswerItem &answer = show(tag(data));
    QTRY_COMPARE(answer.content()->contentHeight(), 4);
    QCOMPARE(log.linesWith(QStringLiteral("warning: picture is too large: 6000x6000")).size(), 1);
}

void TestHostilePictures::unreadable_keepsItsNumber()
{
    const AnswerItem &answer = show(tag("no") + tag(encoded({30, 20}, "PNG")));
    QCOMPARE(answer.content()->pictureRows().size(), 2);
    QTest::mouseClick(answer.content()->pictureRows().at(1)->button(), Qt::LeftButton);
    QCOMPARE(m_region->preview()->currentIndex(), 1);
    m_region->qaRightHitMenu_copySlots(1, ConversationCopier::Picture);
    QCOMPARE(QApplication::clipboard()->pixmap().size(), QSize(30, 20));
}

void TestHostilePictures::unreadable_isCopiedAsNothing()
{
    QApplication::clipboard()->setText(QStringLiteral("before"));
    show(tag("no"));
    m_region->qaRightHitMenu_copySlots(0, ConversationCopier::Picture);
    QVERIFY(QApplication::clipboard()->pixmap().isNull());
}

void TestHostilePictures::unreadable_canBePreviewed()
{
    show(tag("no") + tag(encoded({30, 20}, "PNG")));
    m_region->picture_preview(0);
    QVERIFY(m_region->preview()->isVisible());
    m_region->preview()->grab();
    m_region->changeToNextImg(1);
    QCOMPARE(m_region->preview()->currentIndex(), 1);
    m_region->changeToPreviousImg(0);
    QCOMPARE(m_region->preview()->currentIndex(), 0);
}

void TestHostilePictures::unreadableAnimation_isWrittenAndHasNoFrames()
{
    const AnswerItem &answer
        = show(QStringLiteral("<p><img src=\"data:image/gif;base64,aGVsbG8=\" style=\"\"/></p>"));
    const PictureRow *row = answer.content()->pictureRows().first();
    QCOMPARE(row->size(), QSize(446, 4));
    QVERIFY(!row->label()->movie());
    QFile file(QStringLiteral("gif/0.gif"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("hello"));
}

void TestHostilePictures::animationOfAnAbsurdSize_isNeverDecoded()
{
    // One frame of 1 x 1 px on a canvas of 16,000 x 16,000 px (GIF89a).
    const QByteArray gif = QByteArray::fromHex("474946383961803e803e800000ff0000ffffff"
                                               "2c00000000010001000002024401003b");
    const LogCapture log;
    const AnswerItem &answer
        = show(QStringLiteral("<p><img src=\"data:image/gif;base64,%1\" style=\"\"/></p>")
                   .arg(QLatin1String(gif.toBase64())));
    const PictureRow *row = answer.content()->pictureRows().first();
    QCOMPARE(row->size(), QSize(446, 4));
    QVERIFY(!row->label()->movie());
    QCOMPARE(log.linesWith(QStringLiteral("warning: picture is too large")).size(), 1);
    m_region->picture_preview(0);
    QVERIFY(!m_region->preview()->findChild<QMovie *>());
    QApplication::clipboard()->setText(QStringLiteral("before"));
    m_region->qaRightHitMenu_copySlots(0, ConversationCopier::Picture);
    QVERIFY(QApplication::clipboard()->image().isNull());
}

void TestHostilePictures::inSingleQuotes_isRead()
{
    QString reply = tag(encoded({30, 20}, "PNG"));
    reply.replace(QLatin1Char('"'), QLatin1Char('\''));
    QCOMPARE(show(reply).content()->contentHeight(), 24);
}

void TestHostilePictures::withoutAClosingQuote_isRead()
{
    QString reply = tag(encoded({30, 20}, "PNG"));
    reply.remove(QStringLiteral("\" style=\"\""));
    QCOMPARE(show(reply).content()->contentHeight(), 24);
}

void TestHostilePictures::twoInOnePiece_showTheFirst()
{
    QString reply = tag(encoded({30, 20}, "PNG")) + tag(encoded({40, 60}, "PNG"));
    reply.replace(QStringLiteral("</p><p>"), QString());
    QCOMPARE(show(reply).content()->contentHeight(), 24);
}

void TestHostilePictures::twoHundredInOneAnswer_haveTheirRows()
{
    const int count = 200;
    const AnswerItem &answer = show(tag(encoded({30, 20}, "PNG")).repeated(count));
    QCOMPARE(answer.content()->pictureRows().size(), count);
    QCOMPARE(answer.content()->contentHeight(), count * 24);
    QCOMPARE(answer.height(), 230);
    m_region->picture_preview(count - 1);
    m_region->changeToNextImg(count);
    QCOMPARE(m_region->preview()->currentIndex(), count - 1);
}

void TestHostilePictures::fiveMegabytesOfBase64_areRead()
{
    const QString reply = tag(encoded({1200, 1100}, "BMP"));
    QVERIFY(reply.size() > 5 * 1024 * 1024);
    const AnswerItem &answer = show(reply);
    QCOMPARE(answer.content()->pictureRows().first()->label()->size(), QSize(120, 110));
    QCOMPARE(answer.content()->contentHeight(), 114);
}

QTEST_MAIN(TestHostilePictures)
#include "tst_hostilepictures.moc"
