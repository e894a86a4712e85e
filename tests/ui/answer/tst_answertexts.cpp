#include "app/base/apppaths.h"
#include "resources/resources.h"
#include "tests/support/logcapture.h"
#include "ui/answer/bubble/answeritem.h"
#include "ui/answer/content/answercontent.h"
#include "ui/answer/qaregion.h"
#include "ui/preview/imagedisplay.h"
#include "ui/style/styles.h"

#include <QAccessible>
#include <QBuffer>
#include <QDir>
#include <QImage>
#include <QLabel>
#include <QTemporaryDir>
#include <QTest>
#include <QTextDocument>

/// What an answer's title and paragraphs look like and what is read of them.
class TestAnswerTexts : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void typedTitle_isShownAsTyped_data();
    void typedTitle_isShownAsTyped();
    void typedTitle_isReadAsTyped();
    void typedTitle_isThePreviewsTitleAsTyped();
    void ordinaryTypedTitle_isNotTouched();
    void serviceTitle_staysRichText();
    void paragraph_isReadWithoutMarkup_withItsAmpersands();
    void screenReader_makesNoAnswerReadAFile();
    void paragraphs_haveTheColourOfTitles();
    void links_keepTheirBlue();

private:
    [[nodiscard]] const AnswerItem &answer() const
    {
        return *m_region->findChildren<AnswerItem *>().last();
    }

    [[nodiscard]] QLabel *firstParagraph() const
    {
        return answer().content()->paragraphs().first();
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QARegion> m_region;
};

namespace {

const QColor titleColour(29, 38, 51);
const QColor linkColour(41, 100, 245);

/// What a person can read in \a label.
QString readable(const QLabel *label)
{
    return label->findChild<QTextDocument *>()->toPlainText();
}

QString readName(QWidget *widget)
{
    return QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name);
}

QString pictureTag()
{
    QImage image(60, 40, QImage::Format_RGB32);
    image.fill(Qt::red);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return QStringLiteral("<p><img src=\"data:image/png;base64,%1\" style=\"\"/></p>")
        .arg(QLatin1String(bytes.toBase64()));
}

/// The colour in \a label that is farthest from white.
QColor darkest(QLabel *label)
{
    const QImage image = label->grab().toImage();
    QColor found = Qt::white;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor colour = image.pixelColor(x, y);
            if (colour.lightness() < found.lightness()) {
                found = colour;
            }
        }
    }
    return found;
}

} // namespace

void TestAnswerTexts::initTestCase()
{
    initResources();
    initAppPaths(QString());
}

void TestAnswerTexts::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QDir::setCurrent(m_folder->path());
    m_region = std::make_unique<QARegion>();
    m_region->show();
}

void TestAnswerTexts::cleanup()
{
    m_region.reset();
    QDir::setCurrent(QDir::tempPath());
    m_folder.reset();
}

void TestAnswerTexts::typedTitle_isShownAsTyped_data()
{
    QTest::addColumn<QString>("typed");
    for (const char *typed :
         {"<h1>x</h1>", "<b>bold</b> & <i>x</i>", "a &lt; b", "1 <br> 2", "<img src=\"x\">",
          "<a href=\"c:/x\">x</a>", "<p>two  blanks</p>", "x < y & y > z"}) {
        QTest::newRow(typed) << QString::fromLatin1(typed);
    }
}

void TestAnswerTexts::typedTitle_isShownAsTyped()
{
    QFETCH(QString, typed);
    m_region->QA_NORMAL_RESULT(typed, QString(), QStringLiteral("<p>正文</p>"));
    QCOMPARE(readable(answer().titleLabel()), typed);
    m_region->MULTI_QA_RESULT(typed, QString(), QStringLiteral("<p>正文</p>"), QJsonValue());
    QCOMPARE(readable(answer().titleLabel()), typed);
}

void TestAnswerTexts::typedTitle_isReadAsTyped()
{
    const QString typed = QStringLiteral("<h1>x</h1> & y");
    m_region->QA_NORMAL_RESULT(typed, QString(), QStringLiteral("<p>正文</p>"));
    QCOMPARE(answer().accessibleName(), typed);
    QCOMPARE(answer().content()->accessibleName(), typed);
    QCOMPARE(readName(answer().titleLabel()), typed);
}

void TestAnswerTexts::typedTitle_isThePreviewsTitleAsTyped()
{
    const QString typed = QStringLiteral("<h1>x</h1>");
    m_region->QA_NORMAL_RESULT(typed, QString(), pictureTag());
    m_region->picture_preview(0);
    const auto *title = m_region->preview()->findChild<QLabel *>(QStringLiteral("pictureTitle"));
    QCOMPARE(title->text(), typed);
    QCOMPARE(title->textFormat(), Qt::PlainText);
}

void TestAnswerTexts::ordinaryTypedTitle_isNotTouched()
{
    const QString typed = QStringLiteral("如何修改密码 & 1 < 2？");
    m_region->QA_NORMAL_RESULT(typed, QString(), QStringLiteral("<p>正文</p>"));
    QCOMPARE(answer().titleLabel()->text(), typed);
    QCOMPARE(answer().titleLabel()->styleSheet(), QString(styles::bubbleBoldText));
}

void TestAnswerTexts::serviceTitle_staysRichText()
{
    const QString title = QStringLiteral("<i>标题</i> &amp; 更多");
    m_region->QA_NORMAL_RESULT(QStringLiteral("x"), title, pictureTag());
    QCOMPARE(answer().titleLabel()->text(), title);
    QCOMPARE(readable(answer().titleLabel()), QStringLiteral("标题 & 更多"));
    QCOMPARE(answer().accessibleName(), QStringLiteral("标题 & 更多"));
    m_region->picture_preview(0);
    QCOMPARE(m_region->preview()->findChild<QLabel *>(QStringLiteral("pictureTitle"))->text(),
             QStringLiteral("标题 & 更多"));
}

void TestAnswerTexts::paragraph_isReadWithoutMarkup_withItsAmpersands()
{
    m_region->showAnswer(QStringLiteral("标题"), QStringLiteral("<p>甲 &amp; <b>乙</b></p>"));
    QCOMPARE(readName(firstParagraph()), QStringLiteral("甲 & 乙"));
}

void TestAnswerTexts::screenReader_makesNoAnswerReadAFile()
{
    QFile sheet(m_folder->filePath(QStringLiteral("a.css")));
    QVERIFY(sheet.open(QIODevice::WriteOnly));
    sheet.close();
    const LogCapture log;
    m_region->showAnswer(
        QStringLiteral("标题"),
        QStringLiteral("<p>正文<link rel=\"stylesheet\" type=\"text/css\" href=\"%1\"></p>")
            .arg(sheet.fileName()));
    const QStringList refused = log.linesWith(QStringLiteral("warning: not loaded"));
    QCOMPARE(refused.size(), 1);
    QCOMPARE(readName(firstParagraph()), firstParagraph()->accessibleName());
    QVERIFY(!firstParagraph()->accessibleName().isEmpty());
}

void TestAnswerTexts::paragraphs_haveTheColourOfTitles()
{
    m_region->showAnswer(QStringLiteral("标题"),
                         QStringLiteral("<p><span style=\"font-size:60px\">█</span></p>"));
    QCOMPARE(darkest(firstParagraph()), titleColour);
    QCOMPARE(firstParagraph()->styleSheet(), QString(styles::paragraph));
}

void TestAnswerTexts::links_keepTheirBlue()
{
    m_region->showAnswer(
        QStringLiteral("标题"),
        QStringLiteral("<p><a href=\"http://a/\" style=\"font-size:60px\">█</a></p>"));
    QCOMPARE(darkest(firstParagraph()), linkColour);
}

QTEST_MAIN(TestAnswerTexts)
#include "tst_answertexts.moc"
