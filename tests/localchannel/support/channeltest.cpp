#include "tests/localchannel/support/channeltest.h"

#include "app/base/settingskeys.h"
#include "tests/localchannel/support/freeport.h"

#include <QTest>

void ChannelTest::init()
{
    m_config = std::make_unique<TestConfig>();
    m_config->enter();
    m_log = std::make_unique<LogCapture>();
    m_asked.clear();
    m_whileAsked = nullptr;
    m_lowestFrame = 0;
    m_highestFrame = 0;
}

void ChannelTest::cleanup()
{
    m_thread.reset();
    QCOMPARE(m_log->foreignLines(), QStringList()); // Qt has nothing to complain about
    m_log.reset();
    m_config.reset();
}

void ChannelTest::start(const QString &port)
{
    m_config->set(settingsName(SettingsKey::GuardPort), port);
    m_thread = std::make_unique<SysguardQuestsThread>(this);
    connect(m_thread.get(), &SysguardQuestsThread::sysQuests_signal, this, &ChannelTest::ask);
    connect(this, &ChannelTest::finished, m_thread.get(),
            &SysguardQuestsThread::QAFinishedNestQuest, Qt::QueuedConnection);
    m_thread->start();
}

void ChannelTest::startListening()
{
    m_port = freePort();
    start(QString::number(m_port));
    QTRY_COMPARE_WITH_TIMEOUT(m_log->linesWith(listening).size(), 1, waitMs);
}

void ChannelTest::ask(const QJsonObject &object)
{
    const char here = 0;
    const auto frame = reinterpret_cast<quintptr>(&here);
    m_lowestFrame = m_lowestFrame == 0 ? frame : qMin(m_lowestFrame, frame);
    m_highestFrame = qMax(m_highestFrame, frame);
    m_asked.append(object.value(QLatin1String("question")).toString());
    if (m_whileAsked) {
        m_whileAsked();
    }
    emit finished();
}

std::unique_ptr<GuardClient> ChannelTest::connected()
{
    auto client = std::make_unique<GuardClient>(m_port);
    return client->connects() ? std::move(client) : nullptr;
}

std::unique_ptr<GuardClient> ChannelTest::asking(const QByteArray &question)
{
    auto client = connected();
    if (client) {
        client->send(questionDocument(question));
    }
    return client;
}

bool ChannelTest::answersAGoodQuestion()
{
    const auto client = asking("good");
    return client && QTest::qWaitFor([&client] { return !client->received().isEmpty(); }, waitMs)
        && client->received() == acknowledgementBytes() && m_asked.last() == QLatin1String("good");
}

bool ChannelTest::haveLeft(int clients) const
{
    return QTest::qWaitFor(
        [this, clients] {
            return m_log->linesWith(QLatin1String("info: ") + clientLeft).size() == clients;
        },
        waitMs);
}

int ChannelTest::badMessages() const
{
    return m_log->linesWith(QStringLiteral("graver: parseJson:")).size();
}
