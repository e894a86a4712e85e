#include "tests/service/support/refusingport.h"
#include "tests/standins/standinfolder.h"
#include "tests/support/logcapture.h"
#include "tests/ui/support/windowbench.h"
#include "ui/answer/bubble/answeritem.h"
#include "ui/answer/bubble/messagebubble.h"
#include "ui/answer/bubble/questionbubble.h"
#include "ui/answer/content/answercontent.h"
#include "ui/answer/qaregion.h"
#include "ui/mainwindow/hotquestions/hotquestionscolumn.h"

#include <QDir>
#include <QFile>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <functional>
#include <memory>

namespace {

constexpr int amplyMs = 30'000;

const QString next = QStringLiteral("换一换");
const QByteArray hotReply = R"({"errorCode":"0","result":[{"id":7,"question":"如何修改密码？"}]})";

const QByteArray answerReply
    = R"({"errorCode":"0","result":{"resultType":"QA_NORMAL_RESULT","reply":"<p>答</p>"}})";

QString numbered(int number)
{
    return QStringLiteral("如何%1？").arg(number);
}

} // namespace

/// The main window on its local library.
class TestOfflineWindow : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void launcherStart_readsTheLibrary();
    void launcherStart_withoutLibrary_showsNoRowsAndNoButton();
    void failedFirstFetch_showsTheLibrary();
    void nextPage_goesRound();
    void libraryReadByItself_holdsQuestionsAndAnswers();
    void libraryShownByItself_replacesTheServicesQuestions();
    void clickedQuestion_getsItsAnswer();
    void answerWithAPicture_showsIt();
    void unknownQuestion_showsNothing();
    void networkProblem_showsTheLibraryOnce();
    void networkProblem_withTheLibraryRead_readsNothing();
    void networkProblem_withoutLibrary_showsTheButton();
    void networkProblem_ofARealQuestion_showsTheLibrary();
    void refreshWithData_bringsTheServiceBack();
    void networkProblem_replacesTheRowWhoseAnswerIsAwaited();
    void programsGone_replaceTheColumnWhoseAnswerIsAwaited();

private:
    void writeLibrary(int count) const;
    void write(int number, const QString &question, const QString &answer) const;
    void goOnline();

    /// Clicks the service's question and does \a meanwhile while its answer is awaited. The answer
    /// comes once the clicked row has gone.
    void askWhile(const std::function<void()> &meanwhile);
    [[nodiscard]] QStringList rows() const;
    [[nodiscard]] QPushButton *row(const QString &question) const;
    [[nodiscard]] QPushButton *nextButton() const;

    std::unique_ptr<WindowBench> m_bench;
};

void TestOfflineWindow::init()
{
    m_bench = std::make_unique<WindowBench>();
    m_bench->removeClientSettings();
    m_bench->server().setReplyFor(WindowBench::hotPath, httpReply(hotReply));
    QVERIFY(QDir().mkdir(QStringLiteral("LocalQA")));
}

void TestOfflineWindow::cleanup()
{
    m_bench.reset();
}

void TestOfflineWindow::writeLibrary(int count) const
{
    for (int number = 0; number < count; ++number) {
        write(number, numbered(number + 1), QStringLiteral("<p>答%1</p>").arg(number + 1));
    }
}

void TestOfflineWindow::write(int number, const QString &question, const QString &answer) const
{
    QFile file(QStringLiteral("LocalQA/%1.txt").arg(number));
    const QString text
        = QStringLiteral("<body>\n<p>问题01：%1</p>\n%2\n</body>").arg(question, answer);
    if (!file.open(QIODevice::WriteOnly) || file.write(text.toUtf8()) < 0) {
        qFatal("The file cannot be written");
    }
}

void TestOfflineWindow::goOnline()
{
    QSignalSpy ready(&m_bench->window(), &Miravel::rightRegionSuccess);
    m_bench->window().startForVdiClient();
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, amplyMs);
}

QStringList TestOfflineWindow::rows() const
{
    const auto *list
        = m_bench->window().findChild<HotQuestionsColumn *>()->findChild<QListWidget *>();
    QStringList texts;
    for (int i = 0; i < list->count(); ++i) {
        const auto *button = list->itemWidget(list->item(i))->findChild<QPushButton *>();
        texts.append(button ? button->text() : QString());
    }
    return texts;
}

QPushButton *TestOfflineWindow::row(const QString &question) const
{
    const auto *list
        = m_bench->window().findChild<HotQuestionsColumn *>()->findChild<QListWidget *>();
    for (int i = 0; i < list->count(); ++i) {
        auto *button = list->itemWidget(list->item(i))->findChild<QPushButton *>();
        if (button && button->accessibleName() == question) {
            return button;
        }
    }
    return nullptr;
}

QPushButton *TestOfflineWindow::nextButton() const
{
    const auto buttons
        = m_bench->window().findChild<HotQuestionsColumn *>()->findChildren<QPushButton *>(
            QString(), Qt::FindDirectChildrenOnly);
    for (QPushButton *button : buttons) {
        if (button->text() == next) {
            return button;
        }
    }
    return nullptr;
}

void TestOfflineWindow::launcherStart_readsTheLibrary()
{
    writeLibrary(2);
    QSignalSpy ready(&m_bench->window(), &Miravel::rightRegionSuccess);
    const LogCapture log;
    m_bench->window().startForLauncher();
    QCOMPARE(rows(),
             (QStringList{QStringLiteral("1. 如何1？"), QStringLiteral("2. 如何2？"), QString()}));
    QVERIFY(nextButton()->isVisible());
    QCOMPARE(ready.count(), 1);
    QCOMPARE(log.linesWith(QStringLiteral("info: Get Location")),
             QStringList{QStringLiteral("info: Get Location hot issues ! "
                                        "Location_hot_questions_num: (%d)2netHotWork：false")});
    QCOMPARE(log.linesWith(QStringLiteral("debug: End of reading")).size(), 28);
}

void TestOfflineWindow::launcherStart_withoutLibrary_showsNoRowsAndNoButton()
{
    QSignalSpy ready(&m_bench->window(), &Miravel::rightRegionSuccess);
    m_bench->window().startForLauncher();
    QCOMPARE(rows(), QStringList());
    QVERIFY(!nextButton()->isVisible());
    QCOMPARE(ready.count(), 0);
}

void TestOfflineWindow::failedFirstFetch_showsTheLibrary()
{
    writeLibrary(1);
    m_bench->server().setReplyFor(WindowBench::hotPath,
                                  httpReply(R"({"errorCode":"50001","result":[]})"));
    const LogCapture log;
    m_bench->window().startForVdiClient();
    QTRY_COMPARE_WITH_TIMEOUT(m_bench->messages(), QStringList{noNetworkText}, amplyMs);
    QCOMPARE(rows(), (QStringList{QStringLiteral("1. 如何1？"), QString()}));
    QCOMPARE(log.linesWith(QStringLiteral("info: Get Location")),
             QStringList{QStringLiteral("info: Get Location hot issues ! "
                                        "Location_hot_questions_num: (%d)1netHotWork：true")});
}

void TestOfflineWindow::nextPage_goesRound()
{
    constexpr int shipped = 30;
    writeLibrary(shipped);
    m_bench->window().startForLauncher();
    QCOMPARE(rows().first(), QStringLiteral("1. 如何1？"));
    QCOMPARE(rows().size(), 16);
    QTest::mouseClick(nextButton(), Qt::LeftButton);
    QCOMPARE(rows().first(), QStringLiteral("1. 如何17？"));
    QCOMPARE(rows().size(), 15); // fourteen questions and one empty row
    QCOMPARE(rows().last(), QString());
    QTest::mouseClick(nextButton(), Qt::LeftButton);
    QCOMPARE(rows().first(), QStringLiteral("1. 如何1？"));
}

void TestOfflineWindow::libraryReadByItself_holdsQuestionsAndAnswers()
{
    Miravel &window = m_bench->window();
    QCOMPARE(window.questLocation(), QStringList{QString()});
    QCOMPARE(window.answerLocation(), QStringList{QString()});
    writeLibrary(2);
    window.parseLocalQA();
    QCOMPARE(window.questLocation(), (QStringList{QString(), numbered(1), numbered(2)}));
    QCOMPARE(window.answerLocation().at(2), QStringLiteral("<p>答2</p>"));
    QCOMPARE(window.getLocationQuest_Num(numbered(2)), 2);
    QVERIFY(!window.findChild<HotQuestionsColumn *>()); // nothing is shown by that
}

void TestOfflineWindow::libraryShownByItself_replacesTheServicesQuestions()
{
    writeLibrary(2);
    goOnline();
    m_bench->window().parseLocalQA();
    m_bench->window().showLocalQA();
    QCOMPARE(rows(),
             (QStringList{QStringLiteral("1. 如何1？"), QStringLiteral("2. 如何2？"), QString()}));
}

void TestOfflineWindow::clickedQuestion_getsItsAnswer()
{
    writeLibrary(3);
    m_bench->window().startForLauncher();
    const LogCapture log;
    QTest::mouseClick(row(numbered(2)), Qt::LeftButton);
    const auto *question = m_bench->window().findChild<QuestionBubble *>();
    QVERIFY(question);
    QCOMPARE(question->label()->text(), numbered(2));
    const auto *answer = m_bench->window().findChild<AnswerItem *>();
    QVERIFY(answer);
    QCOMPARE(answer->titleLabel()->text(), numbered(2));
    QCOMPARE(answer->content()->paragraphs().size(), 1);
    QCOMPARE(answer->content()->paragraphs().first()->text(), QStringLiteral("<p>答2</p>"));
    QCOMPARE(log.lines(), (QStringList{QStringLiteral("info: hotRecom click.question: 如何2？"
                                                      "questionId: 0"),
                                       QStringLiteral("info: getIDP: false"),
                                       QStringLiteral("info: locatNum: 2")}));
    QCOMPARE(m_bench->server().connectionCount(), 0);
}

void TestOfflineWindow::answerWithAPicture_showsIt()
{
    // A red picture of 2 x 1 px.
    const QString picture
        = QStringLiteral("iVBORw0KGgoAAAANSUhEUgAAAAIAAAABCAIAAAB7QOjdAAAAD0lEQVR4nGP8z8DAwMAAAAYI"
                         "AQHLR3Z1AAAAAElFTkSuQmCC");
    write(0, numbered(1),
          QStringLiteral(
              "<p>一</p><p><img src=\"data:image/png;base64,%1\" style=\"\"/></p><p>二</p>")
              .arg(picture));
    m_bench->window().startForLauncher();
    QTest::mouseClick(row(numbered(1)), Qt::LeftButton);
    const auto *answer = m_bench->window().findChild<AnswerItem *>();
    QCOMPARE(answer->content()->paragraphs().size(), 2);
    QCOMPARE(answer->content()->pictureRows().size(), 1);
}

void TestOfflineWindow::unknownQuestion_showsNothing()
{
    writeLibrary(1);
    m_bench->window().startForLauncher();
    const LogCapture log;
    m_bench->window().hotRecom_list_click(QStringLiteral("如何1"), 0);
    QVERIFY(!m_bench->window().findChild<QuestionBubble *>());
    QVERIFY(!m_bench->window().findChild<AnswerItem *>());
    QVERIFY(log.lines().contains(QStringLiteral("info: locatNum: -1")));
}

void TestOfflineWindow::networkProblem_showsTheLibraryOnce()
{
    writeLibrary(2);
    goOnline();
    QCOMPARE(rows().size(), 16);
    const LogCapture log;
    emit m_bench->window().findChild<QARegion *>()->netproblem();
    QCOMPARE(rows(),
             (QStringList{QStringLiteral("1. 如何1？"), QStringLiteral("2. 如何2？"), QString()}));
    QCOMPARE(log.linesWith(QStringLiteral("info: ")),
             (QStringList{QStringLiteral("info: get network problem signal"),
                          QStringLiteral("info: before getIDP = true, show LocalQA"),
                          QStringLiteral("info: questLocation size0"),
                          QStringLiteral("info: parse localQuest. questLocation size2")}));
    emit m_bench->window().findChild<QARegion *>()->netproblem();
    QCOMPARE(log.linesWith(QStringLiteral("info: ")).mid(4),
             QStringList{QStringLiteral("info: get network problem signal")});
    QTest::mouseClick(row(numbered(2)), Qt::LeftButton);
    QVERIFY(m_bench->window().findChild<AnswerItem *>());
}

void TestOfflineWindow::networkProblem_withTheLibraryRead_readsNothing()
{
    writeLibrary(1);
    m_bench->window().startForLauncher(); // reads the library
    goOnline();
    writeLibrary(2);
    const LogCapture log;
    m_bench->window().refreshLocalQA();
    QCOMPARE(rows(), (QStringList{QStringLiteral("1. 如何1？"), QString()}));
    QCOMPARE(log.lines(), (QStringList{QStringLiteral("info: get network problem signal"),
                                       QStringLiteral("info: before getIDP = true, show LocalQA"),
                                       QStringLiteral("info: questLocation size1")}));
}

void TestOfflineWindow::networkProblem_withoutLibrary_showsTheButton()
{
    goOnline();
    m_bench->window().refreshLocalQA();
    QCOMPARE(rows(), QStringList{QString()});
    QVERIFY(nextButton()->isVisible());
    QTest::mouseClick(nextButton(), Qt::LeftButton);
    QCOMPARE(rows(), QStringList{QString()});
}

void TestOfflineWindow::networkProblem_ofARealQuestion_showsTheLibrary()
{
    writeLibrary(1);
    goOnline();
    const RefusingPort refusing;
    m_bench->config().setServer(refusing.port());
    QTest::mouseClick(row(QStringLiteral("如何修改密码？")), Qt::LeftButton);
    QCOMPARE(rows(), (QStringList{QStringLiteral("1. 如何1？"), QString()}));
    QCOMPARE(m_bench->messages().last(), noNetworkText);
    QTest::mouseClick(row(numbered(1)), Qt::LeftButton);
    QVERIFY(m_bench->window().findChild<AnswerItem *>());
}

void TestOfflineWindow::refreshWithData_bringsTheServiceBack()
{
    writeLibrary(1);
    goOnline();
    m_bench->window().refreshLocalQA();
    QCOMPARE(rows().first(), QStringLiteral("1. 如何1？"));
    m_bench->window().refreshHotQuestionsTimer();
    QTRY_COMPARE_WITH_TIMEOUT(rows().first(), QStringLiteral("1. 如何修改密码？"), amplyMs);
    QCOMPARE(m_bench->messages().last(), QStringLiteral("热门问题刷新成功。"));
}

void TestOfflineWindow::askWhile(const std::function<void()> &meanwhile)
{
    m_bench->server().setReplyFor(WindowBench::askPath, held(httpReply(answerReply)));
    QPushButton *clicked = row(QStringLiteral("如何修改密码？"));
    connect(clicked, &QObject::destroyed, this, [this] { m_bench->server().release(); });
    QTimer::singleShot(0, this, meanwhile);
    QTest::mouseClick(clicked, Qt::LeftButton);
}

void TestOfflineWindow::networkProblem_replacesTheRowWhoseAnswerIsAwaited()
{
    writeLibrary(1);
    goOnline();
    askWhile([this] { emit m_bench->window().findChild<QARegion *>()->netproblem(); });
    QCOMPARE(rows(), (QStringList{QStringLiteral("1. 如何1？"), QString()}));
    QCOMPARE(m_bench->window().findChildren<AnswerItem *>().size(), 1);
}

void TestOfflineWindow::programsGone_replaceTheColumnWhoseAnswerIsAwaited()
{
    const StandInFolder noCommands; // nothing is found that could list programs
    QDir::setCurrent(m_bench->config().root() + QStringLiteral("/Miravel"));
    writeLibrary(1);
    goOnline();
    askWhile([this] { m_bench->window().detectionProcess_VdiAndOmbra(); });
    QCOMPARE(rows(), (QStringList{QStringLiteral("1. 如何1？"), QString()}));
    QCOMPARE(m_bench->window().findChildren<AnswerItem *>().size(), 1);
}

QTEST_MAIN(TestOfflineWindow)
#include "tst_offlinewindow.moc"
