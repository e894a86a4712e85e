#include "app/base/apppaths.h"
#include "resources/resources.h"
#include "tests/support/logcapture.h"
#include "tests/ui/support/openedlinks.h"
#include "ui/answer/bubble/answeritem.h"
#include "ui/answer/bubble/messagebubble.h"
#include "ui/answer/bubble/questionbubble.h"
#include "ui/answer/content/answercontent.h"
#include "ui/answer/list/conversationlist.h"
#include "ui/answer/qaregion.h"

#include <QDir>
#include <QLabel>
#include <QMouseEvent>
#include <QTemporaryDir>
#include <QTest>

/// Links anywhere in the conversation: a click, or the keyboard, never starts a program.
class TestAnswerLinks : public QObject
{
    Q_OBJECT

public:
    enum class Place {
        Paragraph,
        Title,
    };
    Q_ENUM(Place)

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void driveLetter_startsNothing_data();
    void driveLetter_startsNothing();
    void web_isOpened_data();
    void web_isOpened();
    void messages_openNothing();
    void questions_haveNoLinks();
    void titleAndParagraph_openExternalLinks();
    void wokenAnswer_isGuardedToo();
    void hoveredLink_saysWhereItLeads();

private:
    QLabel *show(Place place, const QString &address);
    static void addPlaces();
    static void click(QLabel *label);
    static void useKeyboard(QLabel *label);

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QARegion> m_region;
};

namespace {

const QString refused = QStringLiteral("warning: link is not opened: c:/windows/notepad.exe");

QString link(const QString &address)
{
    return QStringLiteral("<a href=\"%1\">点这里点这里</a>").arg(address);
}

} // namespace

void TestAnswerLinks::initTestCase()
{
    initResources();
    initAppPaths(QString());
}

void TestAnswerLinks::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QDir::setCurrent(m_folder->path());
    m_region = std::make_unique<QARegion>();
    m_region->resize(647, 490);
    m_region->show();
    m_region->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_region.get()));
}

void TestAnswerLinks::cleanup()
{
    m_region.reset();
    QDir::setCurrent(QDir::tempPath());
    m_folder.reset();
}

void TestAnswerLinks::addPlaces()
{
    QTest::addColumn<Place>("place");
    QTest::newRow("paragraph") << Place::Paragraph;
    QTest::newRow("title") << Place::Title;
}

QLabel *TestAnswerLinks::show(Place place, const QString &address)
{
    const bool inTitle = place == Place::Title;
    m_region->showAnswer(
        inTitle ? link(address) : QStringLiteral("标题"),
        QStringLiteral("<p>%1</p>").arg(inTitle ? QStringLiteral("正文") : link(address)));
    m_region->grab();
    const AnswerItem *answer = m_region->findChildren<AnswerItem *>().last();
    return inTitle ? answer->titleLabel() : answer->content()->paragraphs().first();
}

void TestAnswerLinks::click(QLabel *label)
{
    QTest::mouseClick(label, Qt::LeftButton, Qt::NoModifier, QPoint(20, 8));
}

void TestAnswerLinks::useKeyboard(QLabel *label)
{
    label->setFocus(Qt::TabFocusReason);
    QTest::keyClick(label, Qt::Key_Tab);
    QTest::keyClick(label, Qt::Key_Return);
}

void TestAnswerLinks::driveLetter_startsNothing_data()
{
    addPlaces();
}

void TestAnswerLinks::driveLetter_startsNothing()
{
    QFETCH(Place, place);
    const OpenedLinks links({QStringLiteral("c")});
    const LogCapture log;
    click(show(place, QStringLiteral("c:/windows/notepad.exe")));
    QCOMPARE(log.linesWith(QStringLiteral("warning: ")), QStringList{refused});
    useKeyboard(show(place, QStringLiteral("c:/windows/notepad.exe")));
    QCOMPARE(log.linesWith(QStringLiteral("warning: ")), (QStringList{refused, refused}));
    QCOMPARE(links.addresses(), QStringList());
}

void TestAnswerLinks::web_isOpened_data()
{
    addPlaces();
}

void TestAnswerLinks::web_isOpened()
{
    QFETCH(Place, place);
    const QString address = QStringLiteral("https://help.example/a");
    const OpenedLinks links({QStringLiteral("https")});
    click(show(place, address));
    QCOMPARE(links.addresses(), QStringList{address});
    useKeyboard(show(place, address));
    QCOMPARE(links.addresses(), (QStringList{address, address}));
}

void TestAnswerLinks::messages_openNothing()
{
    m_region->addRobotMessage(link(QStringLiteral("c:/windows/notepad.exe")));
    m_region->grab();
    QLabel *label = m_region->findChildren<MessageBubble *>().last()->text(0);
    const OpenedLinks links({QStringLiteral("c")});
    const LogCapture log;
    click(label);
    QVERIFY(!label->openExternalLinks());
    QCOMPARE(log.lines(), QStringList{refused});
    QCOMPARE(links.addresses(), QStringList());
}

void TestAnswerLinks::questions_haveNoLinks()
{
    const QString typed = link(QStringLiteral("http://a/"));
    m_region->addQuestionBubble(typed);
    m_region->grab();
    QLabel *label = m_region->findChildren<QuestionBubble *>().last()->label();
    const OpenedLinks links({QStringLiteral("http")});
    const LogCapture log;
    click(label);
    useKeyboard(label);
    QCOMPARE(label->text(), typed);
    QCOMPARE(log.lines(), QStringList());
    QCOMPARE(links.addresses(), QStringList());
}

void TestAnswerLinks::titleAndParagraph_openExternalLinks()
{
    for (const Place place : {Place::Title, Place::Paragraph}) {
        QLabel *label = show(place, QStringLiteral("c:/windows/notepad.exe"));
        const LogCapture log;
        click(label);
        QVERIFY(label->openExternalLinks());
    }
}

void TestAnswerLinks::wokenAnswer_isGuardedToo()
{
    show(Place::Paragraph, QStringLiteral("c:/windows/notepad.exe"));
    auto *answer = m_region->findChild<AnswerItem *>();
    QVERIFY(answer->sleep());
    answer->wake();
    const OpenedLinks links({QStringLiteral("c")});
    const LogCapture log;
    click(answer->content()->paragraphs().first());
    QCOMPARE(log.lines(), QStringList{refused});
    QCOMPARE(links.addresses(), QStringList());
}

void TestAnswerLinks::hoveredLink_saysWhereItLeads()
{
    QLabel *label = show(Place::Paragraph, QStringLiteral("https://help.example/&#8238;gpj.exe"));
    // Sent as it is: on a real screen another window may lie under the pointer.
    const QPoint place(20, 8);
    QMouseEvent move(QEvent::MouseMove, place, label->mapToGlobal(place), Qt::NoButton,
                     Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(label, &move);
    QCOMPARE(label->toolTip(), QStringLiteral("https://help.example/\\u{202E}gpj.exe"));
}

QTEST_MAIN(TestAnswerLinks)
#include "tst_answerlinks.moc"
