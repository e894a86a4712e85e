#include "tests/ui/answer/list/sleeptest.h"

#include "app/base/apppaths.h"
#include "resources/resources.h"

#include <QCoreApplication>
#include <QCursor>
#include <QEventLoop>
#include <QTest>
#include <QTimer>

QString SleepTest::question(int number)
{
    return QStringLiteral("第%1个问题").arg(number);
}

void SleepTest::initTestCase()
{
    initResources();
    initAppPaths(QString());
}

void SleepTest::init()
{
    m_region = std::make_unique<QARegion>();
    m_list = m_region->findChild<ConversationList *>();
    m_region->resize(647, 490);
    m_region->move(100, 100);
    QCursor::setPos(0, 0); // an entry under the mouse stays awake
    m_region->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_region.get()));
}

void SleepTest::cleanup()
{
    m_region.reset();
}

void SleepTest::addExchanges(int count)
{
    for (int i = 0; i < count; ++i) {
        m_region->addQuestionBubble(question(questions().size()));
        m_region->showAnswer(QStringLiteral("标题"), QStringLiteral("<p>段落<b>粗</b></p>"));
    }
    letSleep();
}

/// Lets happen what waits for its turn: the list's timer of no length began before this one.
void SleepTest::letSleep()
{
    QCoreApplication::processEvents();
    QEventLoop turn;
    QTimer last;
    connect(&last, &QTimer::timeout, &turn, &QEventLoop::quit);
    last.start(0);
    turn.exec();
}

QList<QuestionBubble *> SleepTest::questions() const
{
    return m_region->findChildren<QuestionBubble *>();
}

QList<AnswerItem *> SleepTest::answers() const
{
    return m_region->findChildren<AnswerItem *>();
}
