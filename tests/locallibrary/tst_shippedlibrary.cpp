#include "locallibrary/locallibrary.h"
#include "resources/resources.h"
#include "tests/support/logcapture.h"
#include "ui/answer/bubble/answeritem.h"
#include "ui/answer/content/answercontent.h"
#include "ui/answer/picture/picturerow.h"
#include "ui/answer/qaregion.h"
#include "ui/mainwindow/hotquestions/hotquestionscolumn.h"

#include <QDir>
#include <QFile>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>

namespace {

constexpr int leastQuestions = 24;
constexpr int leastPictures = 8;
constexpr int leastParagraphs = 2;
constexpr int mostParagraphs = 6;
constexpr int leastAnswerCharacters = 150;
constexpr int pageSize = 16;
constexpr int pictureWidth = 430;
constexpr int pictureRowHeight = 114;

} // namespace

/// The questions and answers that come with the program.
class TestShippedLibrary : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void everyFile_isRead();
    void everyQuestionLine_beginsWithItsNumber();
    void questions_areAllDifferent();
    void questions_areShownWhole();
    void answers_haveTwoToSixParagraphs();
    void answers_showEveryPieceOfThemselves();
    void pictures_fillTheAnswersWidth();

private:
    LocalLibrary m_library;
};

void TestShippedLibrary::initTestCase()
{
    initResources();
    QVERIFY(QDir::setCurrent(QStringLiteral(MIRAVEL_LIBRARY_PARENT)));
    m_library.read();
}

void TestShippedLibrary::everyFile_isRead()
{
    const QDir folder(QStringLiteral("LocalQA"));
    QCOMPARE(m_library.size(), folder.entryList(QDir::Files).size());
    QVERIFY(m_library.size() >= leastQuestions);
}

void TestShippedLibrary::everyQuestionLine_beginsWithItsNumber()
{
    const QDir folder(QStringLiteral("LocalQA"));
    const QStringList names = folder.entryList(QDir::Files);
    for (const QString &name : names) {
        QFile file(folder.filePath(name));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QString start = QStringLiteral("<body>\n<p>问题%1：")
                                  .arg(name.section(QLatin1Char('.'), 0, 0), 2, QLatin1Char('0'));
        QVERIFY2(QString::fromUtf8(file.readAll()).contains(start), qPrintable(name));
    }
}

void TestShippedLibrary::questions_areAllDifferent()
{
    QStringList questions = m_library.questions();
    QCOMPARE(questions.removeDuplicates(), 0);
}

void TestShippedLibrary::questions_areShownWhole()
{
    HotQuestionsColumn column(nullptr);
    column.showLocalQuestions(m_library.questions());
    for (int shown = 0; shown < m_library.size(); shown += pageSize) {
        const auto buttons = column.findChild<QListWidget *>()->findChildren<QPushButton *>();
        for (const QPushButton *button : buttons) {
            QVERIFY2(button->toolTip().isEmpty(), qPrintable(button->text()));
        }
        column.showNextLocalPage();
    }
}

void TestShippedLibrary::answers_haveTwoToSixParagraphs()
{
    static const QRegularExpression tag(QStringLiteral("<[^>]*>"));
    for (int i = 1; i <= m_library.size(); ++i) {
        const QString &answer = m_library.answers().at(i);
        const QString question = m_library.questions().at(i);
        const int paragraphs = answer.count(QStringLiteral("<p>"));
        QVERIFY2(paragraphs >= leastParagraphs && paragraphs <= mostParagraphs,
                 qPrintable(question));
        QVERIFY2(QString(answer).remove(tag).size() >= leastAnswerCharacters, qPrintable(question));
    }
}

void TestShippedLibrary::answers_showEveryPieceOfThemselves()
{
    QARegion region;
    const LogCapture log;
    for (int i = 1; i <= m_library.size(); ++i) {
        region.showAnswer(m_library.questions().at(i), m_library.answers().at(i));
    }
    const auto answers = region.findChildren<AnswerItem *>();
    QCOMPARE(answers.size(), m_library.size());
    for (int i = 0; i < answers.size(); ++i) {
        const AnswerContent *content = answers.at(i)->content();
        const QString &answer = m_library.answers().at(i + 1);
        QCOMPARE(content->paragraphs().size() + content->pictureRows().size(),
                 answer.count(QStringLiteral("<p>")));
    }
    QCOMPARE(log.linesWith(QStringLiteral("warning")), QStringList()); // no broken picture
}

void TestShippedLibrary::pictures_fillTheAnswersWidth()
{
    QARegion region;
    int pictures = 0;
    for (int i = 1; i <= m_library.size(); ++i) {
        region.showAnswer(m_library.questions().at(i), m_library.answers().at(i));
    }
    const auto answers = region.findChildren<AnswerItem *>();
    for (const AnswerItem *answer : answers) {
        for (const PictureRow *row : answer->content()->pictureRows()) {
            QCOMPARE(row->height(), pictureRowHeight);
            QCOMPARE(row->findChild<QPushButton *>()->width(), pictureWidth);
            ++pictures;
        }
    }
    QVERIFY(pictures >= leastPictures);
}

QTEST_MAIN(TestShippedLibrary)
#include "tst_shippedlibrary.moc"
