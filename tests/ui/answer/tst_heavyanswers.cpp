#include "app/base/apppaths.h"
#include "resources/resources.h"
#include "service/reply/listedquestion.h"
#include "tests/support/logcapture.h"
#include "tests/ui/support/guicost.h"
#include "ui/answer/bubble/answeritem.h"
#include "ui/answer/content/answercontent.h"
#include "ui/answer/picture/picturerow.h"
#include "ui/answer/qaregion.h"
#include "ui/preview/imagedisplay.h"

#include <QBuffer>
#include <QDir>
#include <QImage>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>

/// Whatever the service sends, the window handles events again within a second of its thread's
/// processor time.
class TestHeavyAnswers : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void reply_data();
    void reply();
    void pictures_data();
    void pictures();
    void previewOfHugePictures();
    void title_data();
    void title();
    void recommendation_data();
    void recommendation();
    void question_data();
    void question();

private:
    void look(const char *what, const std::function<void()> &action);
    void checkMemory() const;

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QARegion> m_region;
};

namespace {

#ifdef Q_OS_WIN
constexpr qint64 mostStallMs = 2000; // Wine takes up to half as long again with its fonts
#else
constexpr qint64 mostStallMs = 1000;
#endif
constexpr qint64 mostMemoryMb = 1024;

QString repeated(const char *part, int characters)
{
    const QString text = QString::fromUtf8(part);
    return text.repeated(characters / text.size() + 1);
}

QString nested(const char *opening, const char *closing, int depth)
{
    return QString::fromUtf8(opening).repeated(depth) + QStringLiteral("里")
         + QString::fromUtf8(closing).repeated(depth);
}

QString tag(const char *format, const QByteArray &data)
{
    return QStringLiteral("<p><img src=\"data:image/%1;base64,%2\" style=\"\"/></p>")
        .arg(QLatin1String(format), QLatin1String(data.toBase64()));
}

QByteArray png(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::darkCyan);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

QByteArray number(int value)
{
    return QByteArray(1, char(value & 0xff)) + char(value >> 8);
}

/// Four frames on a canvas (GIF89a), 20 ms each, of one pixel in its far corner.
QByteArray gif(int width, int height)
{
    QByteArray bytes = "GIF89a" + number(width) + number(height)
                     + QByteArray::fromHex("800000ff0000ffffff")
                     + QByteArray::fromHex("21ff0b4e45545343415045322e300301000000");
    for (int frame = 0; frame < 4; ++frame) {
        bytes += QByteArray::fromHex("21f9040002000000") + ',' + number(0) + number(0)
               + QByteArray::fromHex("0100010000") + QByteArray::fromHex("02024401")
               + QByteArray(1, '\0');
    }
    return bytes + ';';
}

/// Texts of \a characters that give much to measure.
void addTexts(int characters)
{
    QTest::addColumn<QString>("text");
    const auto row = [characters](const char *name, const char *part) {
        QTest::newRow(name) << repeated(part, characters);
    };
    row("letters without a blank", "x");
    row("ideographs without a blank", "长");
    row("words", "lorem ipsum ");
    row("combining marks", "\u0301");
    row("letters with ten marks each",
        "a\u0301\u0302\u0303\u0304\u0305\u0306\u0307\u0308\u0309\u030a");
    row("Thai without a blank", "ภาษาไทยสวัสดีครับ");
    row("Arabic without a blank", "مرحبابالعالم");
    row("Devanagari without a blank", "क्षत्रिय");
    row("family emoji", "\U0001F468\u200D\U0001F469\u200D\U0001F467\u200D\U0001F466");
    row("joiners", "\u200D");
    row("blanks without a break", "\u00A0");
    row("soft hyphens", "\u00AD");
    row("turned directions", "\u202Ea\u202Db");
    row("embedded directions", "\u202Ba");
    row("line separators", "\u2028");
    row("line ends", "\n");
    row("tabs", "\t");
}

} // namespace

void TestHeavyAnswers::initTestCase()
{
    initResources();
    initAppPaths(QString());
}

void TestHeavyAnswers::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QDir::setCurrent(m_folder->path());
    m_region = std::make_unique<QARegion>();
    m_region->resize(647, 490);
    m_region->show();
    QCoreApplication::processEvents();
    resetPeakMemory();
}

void TestHeavyAnswers::cleanup()
{
    m_region.reset();
    QDir::setCurrent(QDir::tempPath());
    m_folder.reset();
}

void TestHeavyAnswers::look(const char *what, const std::function<void()> &action)
{
    const qint64 stall = longestStallMs(action);
    qInfo("%s: %lld ms, %lld MiB", what, stall, peakMemoryMb());
    QVERIFY2(stall < mostStallMs * slowness(), what);
}

void TestHeavyAnswers::checkMemory() const
{
    QVERIFY(peakMemoryMb() < mostMemoryMb);
}

void TestHeavyAnswers::reply_data()
{
    addTexts(1'000'000);
    const auto row = [](const char *name, const QString &reply) {
        QTest::newRow(name) << reply;
    };
    row("38,000 blocks in each other", nested("<div>", "", 38'000));
    row("15,000 closed blocks in each other", nested("<div>", "</div>", 15'000));
    row("lists in each other", nested("<ul><li>", "", 20'000));
    row("closed lists in each other", nested("<ul><li>", "</li></ul>", 9'000));
    row("spans in each other", nested("<span>", "", 30'000));
    row("coloured spans in each other", nested("<span style='color:red'>", "", 8'000));
    row("fonts in each other", nested("<font size=+1>", "", 14'000));
    row("quotes in each other", nested("<blockquote>", "", 15'000));
    row("links in each other", nested("<a href=x>", "", 20'000));
    row("unknown elements in each other", nested("<x>", "", 60'000));
    row("tables in each other", nested("<table><tr><td>", "", 10'000));
    row("blocks behind comments", nested("<div><!--</div>-->", "", 11'000));
    row("blocks behind attributes", nested("<div title='</div>'>", "", 10'000));
    row("one table of many cells",
        QLatin1String("<table>") + repeated("<tr><td>a<td>b", 190'000) + QLatin1String("</table>"));
    row("a table with one wide row",
        QLatin1String("<table><tr>") + repeated("<td>a", 190'000) + QLatin1String("</table>"));
    row("a cell over many columns",
        QStringLiteral("<table><tr><td colspan=1000000 rowspan=1000000>a</td></tr></table>"));
    row("a cell over many columns, said twice",
        QStringLiteral("<table><tr><td colspan=2 colspan=93638>a</td></tr></table>"));
    row("a cell down many rows",
        QStringLiteral("<table><tr><td rowspan=2147483647>a<td>b<tr><td>c</table>"));
    row("a long table with one wide row", QLatin1String("<table>") + repeated("<tr><td>a", 7'200)
                                              + QLatin1String("<tr><td colspan=700>"));
    row("many cells over many columns",
        QStringLiteral("<table>") + repeated("<tr><td colspan=1000 rowspan=1000>a</td>", 100'000));
    row("many tables", repeated("<table><tr><td>a</table>", 190'000));
    row("many list entries", QLatin1String("<ol>") + repeated("<li>a", 190'000));
    row("many line breaks", repeated("<br>a", 190'000));
    row("many rules", repeated("<hr>", 190'000));
    row("many style rules", QLatin1String("<style>") + repeated("b i{color:red}", 90'000)
                                + QLatin1String("</style>") + repeated("<b>a</b><i>b</i>", 90'000));
    QString fonts;
    for (int size = 1; size < 3000; ++size) {
        fonts += QStringLiteral("<span style='font-size:%1px'>字</span>").arg(size);
    }
    row("many font sizes", fonts);
    row("a huge font", QStringLiteral("<span style='font-size:2000px'>") + repeated("字", 3000));
    row("many links", repeated("<a href=http://x.example>a</a>", 190'000));
    row("10,000 paragraphs", repeated("<p>段</p>", 80'000));
    row("100,000 paragraphs", repeated("<p>段</p>", 800'000));
    row("20,000 attributes",
        QLatin1String("<div ") + repeated("a=b ", 190'000) + QLatin1String(">x</div>"));
    for (const char *length : {"2147483647", "-2147483648", "99999999999", "1e30", "100000000%"}) {
        const QString value = QString::fromLatin1(length);
        QTest::newRow(length)
            << QStringLiteral("<table width=%1 height=%1 border=%1 cellspacing=%1 cellpadding=%1>"
                              "<tr><td colspan=%1 rowspan=%1 width=%1>a<td>b</table><ol start=%1>"
                              "<li value=%1>c</ol><font size=%1>d</font><hr width=%1>")
                       .arg(value)
                   + QStringLiteral(
                         "<p style='margin:%1px;text-indent:%1px;line-height:%1;padding:%1px;"
                         "-qt-block-indent:%1;font-weight:%1;letter-spacing:%1px'>e</p>"
                         "<span style='font-size:%1px;word-spacing:%1px'>f</span>")
                         .arg(value);
    }
    for (const char *size : {"30000000", "1e30", "-1e30", "nan"}) {
        const QString value = QString::fromLatin1(size);
        row(qPrintable(QStringLiteral("table spacing ") + value),
            QStringLiteral("<table cellspacing=%1><tr><td>a<td>b</table>").arg(value));
        row(qPrintable(QStringLiteral("table padding ") + value),
            QStringLiteral("<table cellpadding=%1><tr><td>a<td>b</table>").arg(value));
        row(qPrintable(QStringLiteral("table margin ") + value),
            QStringLiteral("<table style='margin:%1px'><tr><td>a<td>b</table>").arg(value));
    }
    row("preformatted", QLatin1String("<pre>") + repeated("x", 190'000));
    row("entities", repeated("&amp;", 190'000));
    row("opened brackets", repeated("<", 190'000));
}

void TestHeavyAnswers::reply()
{
    QFETCH(QString, text);
    look("shown", [&] { m_region->showAnswer(QStringLiteral("标题"), text); });
    look("opened", [this] { m_region->FoldToOpen_answer(0); });
    auto *bar = m_region->findChild<QListWidget *>()->verticalScrollBar();
    look("scrolled to its middle", [bar] { bar->setValue(bar->maximum() / 2); });
    look("scrolled to its end", [bar] { bar->setValue(bar->maximum()); });
    look("next answer",
         [this] { m_region->showAnswer(QStringLiteral("标题"), QStringLiteral("<p>下一个</p>")); });
    look("scrolled back", [bar] { bar->setValue(0); });
    checkMemory();
}

void TestHeavyAnswers::pictures_data()
{
    QTest::addColumn<QString>("tag");
    QTest::addColumn<int>("count");
    QTest::newRow("GIFs of 4000 x 4000") << tag("gif", gif(4000, 4000)) << 20;
    QTest::newRow("GIFs of 2000 x 2000") << tag("gif", gif(2000, 2000)) << 20;
    QTest::newRow("GIFs of 10 x 10") << tag("gif", gif(10, 10)) << 300;
    QTest::newRow("PNGs of 256 MiB") << tag("png", png(8191, 8191)) << 60;
    QTest::newRow("PNGs of 8 MiB") << tag("png", png(1920, 1080)) << 200;
    QTest::newRow("a thousand tiny PNGs") << tag("png", png(20, 20)) << 3000;
}

void TestHeavyAnswers::pictures()
{
    QFETCH(QString, tag);
    QFETCH(int, count);
    look("shown", [&] { m_region->showAnswer(QStringLiteral("标题"), tag.repeated(count)); });
    look("opened", [this] { m_region->FoldToOpen_answer(0); });
    auto *bar = m_region->findChild<QListWidget *>()->verticalScrollBar();
    for (const int part : {0, 1, 2, 3}) {
        look("scrolled", [bar, part] { bar->setValue(bar->maximum() * part / 3); });
    }
    look("next answer",
         [this] { m_region->showAnswer(QStringLiteral("标题"), QStringLiteral("<p>下一个</p>")); });
    look("copied", [this] {
        QMetaObject::invokeMethod(m_region.get(), "qaRightHitMenu_copySlots", Q_ARG(int, 0),
                                  Q_ARG(int, 1));
    });
    look("scrolled back", [bar] { bar->setValue(0); });
    const auto labels = m_region->findChildren<PictureRow *>();
    const auto isThere = [&labels](int row) {
        const QLabel *label = labels.at(row)->label();
        return label->movie() != nullptr || label->pixmap(Qt::ReturnByValue).width() > 0;
    };
    // Those that are decoded elsewhere come one after another.
    QVERIFY(longestStallMs([] {}, [&] { return isThere(0) && isThere(3); })
            < mostStallMs * slowness());
    QVERIFY(isThere(3));
    checkMemory();
}

void TestHeavyAnswers::previewOfHugePictures()
{
    m_region->showAnswer(QStringLiteral("标题"),
                         tag("png", png(8191, 8191)) + tag("gif", gif(8000, 8000)));
    m_region->picture_preview(0);
    ImageDisplay *preview = m_region->preview();
    const auto *label = preview->findChild<QLabel *>(QStringLiteral("pictureLabel"));
    const auto isThere = [label] {
        return !label->pixmap(Qt::ReturnByValue).isNull() || label->movie() != nullptr;
    };
    const auto watch = [&](const char *what, const std::function<void()> &action) {
        const qint64 stall = longestStallMs(action, isThere);
        qInfo("%s: %lld ms, %lld MiB", what, stall, peakMemoryMb());
        QVERIFY2(stall < mostStallMs * slowness(), what);
    };
    const auto call = [preview](const char *slot) {
        return [preview, slot] {
            QMetaObject::invokeMethod(preview, slot);
        };
    };
    watch("decoded", [] {});
    for (int step = 0; step < 3; ++step) {
        watch("zoomed in", call("magnifier_clicked"));
    }
    watch("fitted", call("MaxPicWind_clicked"));
    watch("zoomed out", call("narrow_clicked"));
    watch("maximised", call("max_windows_Imag"));
    watch("in its size", call("oneToOneSize_clicked"));
    watch("the animation", [this] { m_region->changeToNextImg(1); });
    QVERIFY(label->movie() == nullptr); // each of its frames would take as long
    QCOMPARE(label->pixmap(Qt::ReturnByValue).size(), QSize(8000, 8000));
    watch("the picture", [this] { m_region->changeToPreviousImg(0); });
    checkMemory();
}

void TestHeavyAnswers::title_data()
{
    addTexts(1'000'000);
    QTest::newRow("blocks in each other") << nested("<div>", "", 38'000);
    QTest::newRow("tables in each other") << nested("<table><tr><td>", "", 10'000);
}

void TestHeavyAnswers::title()
{
    QFETCH(QString, text);
    look("shown", [&] { m_region->showAnswer(text, QStringLiteral("<p>答</p>")); });
    checkMemory();
}

void TestHeavyAnswers::recommendation_data()
{
    addTexts(1'000'000);
}

void TestHeavyAnswers::recommendation()
{
    QFETCH(QString, text);
    const QVector<ListedQuestion> recommends(15, {text, 1});
    look("below an answer", [&] {
        m_region->showAnswerWithRecommends(QStringLiteral("标题"), QStringLiteral("<p>答</p>"),
                                           recommends, QStringLiteral("问"));
    });
    look("on its own", [&] { m_region->showRecommendOnly(recommends, QStringLiteral("问")); });
    const auto buttons = m_region->findChildren<QPushButton *>();
    for (QPushButton *button : buttons) {
        if (button->text() == QStringLiteral("换一换")) {
            look("next page", [button] { button->click(); });
        }
    }
    checkMemory();
}

void TestHeavyAnswers::question_data()
{
    addTexts(1'000'000);
}

void TestHeavyAnswers::question()
{
    QFETCH(QString, text);
    look("shown", [&] { m_region->addQuestionBubble(text); });
    checkMemory();
}

QTEST_MAIN(TestHeavyAnswers)
#include "tst_heavyanswers.moc"
