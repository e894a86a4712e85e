#include "app/base/apppaths.h"
#include "resources/resources.h"
#include "service/diagnosis/probehosts.h"
#include "tests/standins/standinfolder.h"
#include "tests/support/logcapture.h"
#include "ui/answer/bubble/messagebubble.h"
#include "ui/answer/list/conversationlist.h"
#include "ui/answer/qaregion.h"
#include "ui/mainwindow/miravel.h"

#include <QAction>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QScrollBar>
#include <QTest>
#include <QUrl>

#include <memory>

namespace {

constexpr int amplyMs = 30'000;

const QString site = QStringLiteral("itsite://report.example/new?from=miravel");
const QString siteScheme = QStringLiteral("itsite");
const QString telephone
    = QStringLiteral("您好，请拨打IT支持热线: ") + QStringLiteral("400-000-0000");

const QString shortcutLine = QStringLiteral(
    "info: INVIRTUAL_SHORTCUT, Intranet environment, jump to IT reporting website");
const QString insideLine
    = QStringLiteral("info: VELISTRA_NEW, Intranet environment, jump to IT reporting website");
const QString outsideLine
    = QStringLiteral("info: VELISTRA_NEW, External network environment, prompt to call IT");

QByteArray answerFrom(const QByteArray &address)
{
    return "Pinging h [" + address + "] with 32 bytes of data:\nReply: time=3ms TTL=64\n";
}

} // namespace

/// Sending the user to the IT department, with a stand-in for the ping program and for the browser.
class TestItReport : public QObject
{
    Q_OBJECT

public slots:
    /// What the desktop opens.
    void openedByDesktop(const QUrl &url) { m_opened.append(url.toString()); }

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void shortcut_opensTheSite_withoutProbing();
    void insideTheNetwork_opensTheSite();
    void outsideTheNetwork_namesTheTelephone();
    void noNetwork_namesTheTelephone();
    void missingPing_namesTheTelephone();
    void otherLayout_isProbedToo();
    void helpEntryOfTheMenu_reports();
    void telephone_isNotScrolledTo();
    void siteIsReadAnewEachTime();
    void missingSite_isPassedToTheDesktopAsItIs();

private:
    void makeWindow(const QString &callerType);
    void writeSite(const QString &address) const;
    void answerPing(const QString &host, const QByteArray &address) const;
    [[nodiscard]] bool wasProbed() const { return !m_folder->calls().isEmpty(); }
    [[nodiscard]] QStringList messages() const;

    /// What was logged of the report; the window's threads log other matters meanwhile.
    [[nodiscard]] QStringList reportLines() const
    {
        return m_log->lines().filter(QStringLiteral(" environment, "));
    }

    std::unique_ptr<StandInFolder> m_folder;
    std::unique_ptr<Miravel> m_window;
    std::unique_ptr<LogCapture> m_log;
    QStringList m_opened;
};

void TestItReport::initTestCase()
{
    initResources();
}

void TestItReport::init()
{
    m_opened.clear();
    QDesktopServices::setUrlHandler(siteScheme, this, "openedByDesktop");
    m_folder = std::make_unique<StandInFolder>();
    // The program's folder, in which the stand-in works, with the settings of both layouts.
    QDir root(m_folder->path());
    QVERIFY(root.mkpath(QStringLiteral("config")));
    QVERIFY(root.mkpath(QStringLiteral("Miravel/config")));
    QVERIFY(QDir::setCurrent(root.filePath(QStringLiteral("Miravel"))));
    m_folder->install(QStringLiteral("ping"));
    writeSite(site);
    m_log = std::make_unique<LogCapture>();
}

void TestItReport::cleanup()
{
    m_log.reset();
    m_window.reset();
    QDesktopServices::unsetUrlHandler(siteScheme);
    m_folder.reset();
}

void TestItReport::makeWindow(const QString &callerType)
{
    initAppPaths(callerType);
    m_window = std::make_unique<Miravel>();
    m_window->show();
    m_log->clear();
}

void TestItReport::writeSite(const QString &address) const
{
    const QString content = QStringLiteral("[url]\nitreporturl=%1\n").arg(address);
    for (const char *path : {"../config/Miravel.ini", "config/Miravel.ini"}) {
        QFile file{QLatin1String(path)};
        if (!file.open(QIODevice::WriteOnly) || file.write(content.toUtf8()) < 0) {
            qFatal("The settings cannot be written");
        }
    }
}

void TestItReport::answerPing(const QString &host, const QByteArray &address) const
{
    m_folder->answer(host, "answer", answerFrom(address));
}

QStringList TestItReport::messages() const
{
    QStringList texts;
    const auto bubbles = m_window->findChildren<MessageBubble *>();
    for (const MessageBubble *bubble : bubbles) {
        texts.append(bubble->label()->text());
    }
    return texts;
}

void TestItReport::shortcut_opensTheSite_withoutProbing()
{
    makeWindow(QString());
    m_window->itReport_url();
    QCOMPARE(m_opened, QStringList{site});
    QCOMPARE(messages(), QStringList());
    QCOMPARE(reportLines(), QStringList{shortcutLine});
    QVERIFY(!wasProbed());
}

void TestItReport::insideTheNetwork_opensTheSite()
{
    answerPing(webProbeHost(), "10.1.2.3");
    makeWindow(QStringLiteral("vdi"));
    m_window->itReport_url();
    QCOMPARE(m_opened, QStringList{site});
    QCOMPARE(messages(), QStringList());
    QCOMPARE(reportLines(), QStringList{insideLine});
}

void TestItReport::outsideTheNetwork_namesTheTelephone()
{
    answerPing(webProbeHost(), "203.0.113.9");
    makeWindow(QStringLiteral("vdi"));
    m_window->itReport_url();
    QCOMPARE(m_opened, QStringList());
    QCOMPARE(messages(), QStringList{telephone});
    QCOMPARE(reportLines(), QStringList{outsideLine});
}

void TestItReport::noNetwork_namesTheTelephone()
{
    makeWindow(QStringLiteral("ombra"));
    m_window->itReport_url();
    QCOMPARE(m_opened, QStringList());
    QCOMPARE(messages(), QStringList{telephone});
    QCOMPARE(reportLines(), QStringList{outsideLine});
    QVERIFY(wasProbed());
}

void TestItReport::missingPing_namesTheTelephone()
{
#ifdef Q_OS_WIN
    QSKIP("Windows always finds its own ping");
#endif
    QVERIFY(QFile::remove(m_folder->path() + QStringLiteral("/ping")));
    makeWindow(QStringLiteral("vdi"));
    m_window->itReport_url();
    QCOMPARE(messages(), QStringList{telephone});
    QCOMPARE(reportLines(), QStringList{outsideLine});
}

void TestItReport::otherLayout_isProbedToo()
{
    answerPing(webProbeHost(), "10.1.2.3");
    makeWindow(QStringLiteral("vdi"));
    miravelVersion = QStringLiteral("invirtual_shortcut");
    m_window->itReport_url();
    QVERIFY(wasProbed());
    QCOMPARE(reportLines(), QStringList{insideLine});
}

void TestItReport::helpEntryOfTheMenu_reports()
{
    makeWindow(QString());
    m_window->about_menuClicked();
    auto *help = m_window->findChild<QAction *>(QStringLiteral("actHelp"));
    QVERIFY(help);
    help->trigger();
    QCOMPARE(m_opened, QStringList{site});
}

void TestItReport::telephone_isNotScrolledTo()
{
    makeWindow(QStringLiteral("ombra"));
    auto *list = m_window->findChild<ConversationList *>();
    auto *region = m_window->findChild<QARegion *>();
    for (int i = 0; i < 10; ++i) { // more than are seen at once
        region->addRobotMessage(telephone);
    }
    m_window->itReport_url();
    const QScrollBar *bar = list->verticalScrollBar();
    QTRY_VERIFY_WITH_TIMEOUT(bar->maximum() > 0, amplyMs);
    QCOMPARE(bar->value(), 0);
}

void TestItReport::siteIsReadAnewEachTime()
{
    makeWindow(QString());
    m_window->itReport_url();
    writeSite(site + QStringLiteral("&again"));
    m_window->itReport_url();
    QCOMPARE(m_opened, (QStringList{site, site + QStringLiteral("&again")}));
}

void TestItReport::missingSite_isPassedToTheDesktopAsItIs()
{
    writeSite(QString());
    makeWindow(QString());
    m_window->itReport_url();
    QCOMPARE(m_opened, QStringList()); // an address without a scheme is no handler's
    QCOMPARE(messages(), QStringList());
    QCOMPARE(reportLines(), QStringList{shortcutLine});
}

QTEST_MAIN(TestItReport)
#include "tst_itreport.moc"
