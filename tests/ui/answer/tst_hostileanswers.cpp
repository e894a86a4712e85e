#include "app/base/apppaths.h"
#include "resources/resources.h"
#include "tests/service/support/testserver.h"
#include "tests/support/logcapture.h"
#include "ui/answer/bubble/answeritem.h"
#include "ui/answer/bubble/questionbubble.h"
#include "ui/answer/content/answercontent.h"
#include "ui/answer/content/replypieces.h"
#include "ui/answer/qaregion.h"
#include "ui/style/styles.h"
#include "ui/text/bubblelabel.h"

#include <QDir>
#include <QImage>
#include <QLabel>
#include <QTemporaryDir>
#include <QTest>
#include <QTextDocument>
#include <QUrl>

/// Answers whose rich text is broken, odd or malicious are shown as far as they make sense, read
/// nothing and run nothing.
class TestHostileAnswers : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void unclosedTags_showTheirText();
    void tenThousandParagraphs_areAllThere();
    void aMegabyteWithoutABlank_isCutAndSaid();
    void rightToLeftText_isKept();
    void emojiOutsideTheBmp_isNotCutAtALineEnd();
    void paragraphWithAttributes_isOneRow();
    void nestedTables_areLaidOut_data();
    void nestedTables_areLaidOut();
    void script_isNeitherShownNorRun();
    void nul_doesNotEndTheAnswer();
    void pictureTagOfAFile_isDropped();
    void pictureTagOfAnAddress_fetchesNothing();
    void whateverNamesAFile_readsNothing_data();
    void whateverNamesAFile_readsNothing();
    void titleThatNamesAFile_readsNothing();
    void whateverNamesAnAddress_fetchesNothing();
    void pictureDataInAText_isNotDecoded();
    void hugeFontsAndMargins_stayInsideTheirRow();

private:
    /// The one answer of the region, shown with \a reply.
    const AnswerItem &show(const QString &reply, const QString &title = QStringLiteral("标题"));

    /// What a person can read in \a label.
    [[nodiscard]] static QString readable(const QLabel *label);

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QARegion> m_region;
    QString m_secret; ///< path of a red picture
};

void TestHostileAnswers::initTestCase()
{
    initResources();
    initAppPaths(QString());
}

void TestHostileAnswers::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QDir::setCurrent(m_folder->path());
    m_secret = m_folder->filePath(QStringLiteral("secret.png"));
    QImage red(60, 40, QImage::Format_RGB32);
    red.fill(Qt::red);
    QVERIFY(red.save(m_secret));
    m_region = std::make_unique<QARegion>();
    m_region->show();
}

void TestHostileAnswers::cleanup()
{
    m_region.reset();
    QDir::setCurrent(QDir::tempPath());
    m_folder.reset();
}

const AnswerItem &TestHostileAnswers::show(const QString &reply, const QString &title)
{
    m_region->showAnswer(title, reply);
    m_region->grab(); // lays out and paints it
    return *m_region->findChildren<AnswerItem *>().last();
}

QString TestHostileAnswers::readable(const QLabel *label)
{
    return label->findChild<QTextDocument *>()->toPlainText();
}

void TestHostileAnswers::unclosedTags_showTheirText()
{
    const AnswerItem &answer = show(
        QStringLiteral("<p>一<b>二<p>三</i></p><table><tr><td>四<ul><li>五<a href=\"x>六 <"));
    QCOMPARE(answer.content()->paragraphs().size(), 3);
    QCOMPARE(readable(answer.content()->paragraphs().at(0)), QStringLiteral("一二"));
    QCOMPARE(readable(answer.content()->paragraphs().at(1)), QStringLiteral("三"));
    QVERIFY(readable(answer.content()->paragraphs().at(2)).contains(QStringLiteral("四")));
}

void TestHostileAnswers::tenThousandParagraphs_areAllThere()
{
    const int count = 10000;
    const AnswerItem &answer = show(QStringLiteral("<p>段</p>").repeated(count));
    const AnswerContent *content = answer.content();
    QCOMPARE(content->paragraphs().size(),
             maxOwnRows + (count - maxOwnRows) / paragraphsOfASharedRow);
    QString shown;
    for (const QLabel *paragraph : content->paragraphs()) {
        shown += readable(paragraph);
    }
    QCOMPARE(shown.count(QStringLiteral("段")), count);
    QVERIFY(content->contentHeight() > count * QFontMetrics(content->font()).height());
    QCOMPARE(answer.height(), 230);
}

void TestHostileAnswers::aMegabyteWithoutABlank_isCutAndSaid()
{
    const LogCapture log;
    const AnswerItem &answer = show(QString(1024 * 1024, QLatin1Char('x')));
    QCOMPARE(answer.content()->paragraphs().size(), 2);
    QCOMPARE(readable(answer.content()->paragraphs().first()).size(), maxAnswerCharacters);
    QCOMPARE(readable(answer.content()->paragraphs().last()),
             QStringLiteral("（内容过长，仅显示前一部分。）"));
    QCOMPARE(log.linesWith(QStringLiteral("warning: answer is too long")).size(), 1);
}

void TestHostileAnswers::rightToLeftText_isKept()
{
    const QString text = QStringLiteral("שלום עולם ABC مرحبا 12 \u202eabc\u202c");
    m_region->addQuestionBubble(text);
    QCOMPARE(m_region->findChild<QuestionBubble *>()->label()->text(), text);
    const AnswerItem &answer = show(QStringLiteral("<p dir='rtl'>%1</p>").arg(text));
    QCOMPARE(readable(answer.content()->paragraphs().first()), text);
}

void TestHostileAnswers::emojiOutsideTheBmp_isNotCutAtALineEnd()
{
    const QString emoji = QString::fromUtf8("\xF0\x9F\x98\x80").repeated(100);
    m_region->addQuestionBubble(emoji);
    const QLabel *label = m_region->findChild<QuestionBubble *>()->label();
    const QStringList lines = label->text().split(QLatin1Char('\n'));
    QVERIFY(lines.size() > 2);
    for (const QString &line : lines) {
        QCOMPARE(line.size() % 2, 0);
        QVERIFY(line.isEmpty() || line.at(0).isHighSurrogate());
    }
}

void TestHostileAnswers::paragraphWithAttributes_isOneRow()
{
    const AnswerItem &answer = show(QStringLiteral("<p class=\"x\">一</p><p>二</p>"));
    QCOMPARE(answer.content()->paragraphs().size(), 2);
    QCOMPARE(readable(answer.content()->paragraphs().first()).trimmed(), QStringLiteral("一"));
}

void TestHostileAnswers::nestedTables_areLaidOut_data()
{
    QTest::addColumn<int>("depth");
    QTest::addColumn<bool>("asTables");
    QTest::addColumn<QString>("between");
    QTest::newRow("4") << 4 << true << QString();
    QTest::newRow("5") << 5 << false << QString();
    QTest::newRow("1,000") << 1000 << false << QString();
    QTest::newRow("20, as if closed in between")
        << 20 << false << QStringLiteral("<!--</table>--><a title=\"</table>\">");
}

void TestHostileAnswers::nestedTables_areLaidOut()
{
    QFETCH(int, depth);
    QFETCH(bool, asTables);
    QFETCH(QString, between);
    const LogCapture log;
    const AnswerItem &answer
        = show((QStringLiteral("<table border=1><tr><td>") + between).repeated(depth)
               + QStringLiteral("里") + QStringLiteral("</td></tr></table>").repeated(depth));
    const QLabel *label = answer.content()->paragraphs().first();
    QVERIFY(readable(label).contains(QStringLiteral("里")));
    QVERIFY(label->height() > 10);
    QCOMPARE(label->text().contains(QLatin1String("<table")), asTables);
    QCOMPARE(log.linesWith(QStringLiteral("warning: tables lie too deep")).isEmpty(), asTables);
}

void TestHostileAnswers::script_isNeitherShownNorRun()
{
    const AnswerItem &answer = show(QStringLiteral("<p>一<script>alert('x')</script>二</p>"
                                                   "<p><style>body{color:red}</style>三</p>"
                                                   "<p onclick=\"alert(1)\">四</p>"));
    QCOMPARE(readable(answer.content()->paragraphs().at(0)), QStringLiteral("一二"));
    QCOMPARE(readable(answer.content()->paragraphs().at(1)), QStringLiteral("三"));
    QCOMPARE(readable(answer.content()->paragraphs().at(2)).trimmed(), QStringLiteral("四"));
}

void TestHostileAnswers::nul_doesNotEndTheAnswer()
{
    const QString nul(1, QChar(QChar::Null));
    const AnswerItem &answer = show(QLatin1String("<p>A") + nul + QLatin1String("B</p><p>C</p>"));
    QCOMPARE(answer.content()->paragraphs().size(), 2);
    QVERIFY(readable(answer.content()->paragraphs().first()).contains(QLatin1Char('B')));
}

void TestHostileAnswers::pictureTagOfAFile_isDropped()
{
    const AnswerItem &answer = show(QStringLiteral("<p>一</p><p><img src=\"%1\"/></p>")
                                        .arg(QUrl::fromLocalFile(m_secret).toString()));
    QCOMPARE(answer.content()->count(), 1);
    QVERIFY(answer.content()->pictureRows().isEmpty());
}

void TestHostileAnswers::pictureTagOfAnAddress_fetchesNothing()
{
    const TestServer server;
    const AnswerItem &answer
        = show(QStringLiteral("<p>一</p><p><img src=\"http://127.0.0.1:%1/a.png\"/></p>")
                   .arg(server.port()));
    QCOMPARE(answer.content()->count(), 1);
    QCoreApplication::processEvents();
    QCOMPARE(server.connectionCount(), 0);
}

void TestHostileAnswers::whateverNamesAFile_readsNothing_data()
{
    QTest::addColumn<QString>("reply");
    const auto row = [](const char *name, const char *reply) {
        QTest::newRow(name) << QString::fromUtf8(reply);
    };
    row("picture tag in capitals", "<p>字<IMG SRC=\"%1\"></p>");
    row("picture tag in capitals, by path", "<p>字<IMG SRC=\"%2\"></p>");
    row("background of a paragraph", "<p>字<div style=\"background-image:url(%1)\">字</div></p>");
    row("background of a table", "<p>字<table background=\"%1\"><tr><td>字</table></p>");
    row("mark of a list", "<p>字<ul style=\"list-style-image:url(%1)\"><li>字</ul></p>");
    row("style sheet", "<p>字<link rel=\"stylesheet\" type=\"text/css\" href=\"%1\"></p>");
    row("import", "<p>字<style>@import url(%1);</style></p>");
}

void TestHostileAnswers::whateverNamesAFile_readsNothing()
{
    QFETCH(QString, reply);
    const AnswerItem &answer
        = show(QString(reply)
                   .replace(QLatin1String("%1"), QUrl::fromLocalFile(m_secret).toString())
                   .replace(QLatin1String("%2"), m_secret));
    QCOMPARE(answer.content()->paragraphs().size(), 1);
    QLabel *label = answer.content()->paragraphs().first();
    const QImage shot = label->grab().toImage();
    for (int y = 0; y < shot.height(); ++y) {
        for (int x = 0; x < shot.width(); ++x) {
            QVERIFY(shot.pixelColor(x, y) != QColor(Qt::red));
        }
    }
    QVERIFY(readable(label).contains(QStringLiteral("字")));
}

void TestHostileAnswers::titleThatNamesAFile_readsNothing()
{
    const LogCapture log;
    const AnswerItem &answer = show(QStringLiteral("<p>一</p>"),
                                    QStringLiteral("<b>题</b><img src=\"%1\">").arg(m_secret));
    QVERIFY(answer.titleLabel()->height() < 40);
    QCOMPARE(log.linesWith(QStringLiteral("warning: not loaded for an answer: ")).size(), 1);
}

void TestHostileAnswers::whateverNamesAnAddress_fetchesNothing()
{
    const TestServer server;
    const QString address = QStringLiteral("http://127.0.0.1:%1/a.png").arg(server.port());
    show(QStringLiteral("<p>字<IMG SRC=\"%1\"><div style=\"background-image:url(%1)\">字</div></p>")
             .arg(address));
    QCoreApplication::processEvents();
    QCOMPARE(server.connectionCount(), 0);
}

void TestHostileAnswers::pictureDataInAText_isNotDecoded()
{
    const LogCapture log;
    const AnswerItem &answer
        = show(QStringLiteral("<p>字<IMG SRC=\"data:text/plain;base64,AAAA\"></p>"));
    QCOMPARE(answer.content()->paragraphs().size(), 1);
    QVERIFY(answer.content()->paragraphs().first()->height() < 40);
    QCOMPARE(log.linesWith(QStringLiteral("warning: not loaded for an answer: data:")).size(), 1);
}

void TestHostileAnswers::hugeFontsAndMargins_stayInsideTheirRow()
{
    const AnswerItem &answer = show(
        QStringLiteral("<p><span style=\"font-size:100000px\">字</span></p>"
                       "<p><div style=\"margin-top:2000000000px\">字</div></p>")
        + QStringLiteral("<p><div style=\"margin-top:30000000px\">字</div></p>").repeated(300));
    QCOMPARE(answer.content()->paragraphs().size(), 302);
    QVERIFY(answer.content()->contentHeight() > 0);
    QVERIFY(answer.content()->contentHeight() <= QWIDGETSIZE_MAX);
    QCOMPARE(answer.height(), 230);
    m_region->FoldToOpen_answer(0);
    QVERIFY(m_region->findChildren<AnswerItem *>().last()->height() > 230);
}

QTEST_MAIN(TestHostileAnswers)
#include "tst_hostileanswers.moc"
