#include "app/base/loghandler.h"
#include "app/startup/singleapplication.h"
#include "bench/rows.h"
#include "bench/stallwatch.h"
#include "bench/timing.h"
#include "tests/ui/support/windowbench.h"
#include "ui/answer/qaregion.h"
#include "ui/mainwindow/suggestions/suggestionpopup.h"
#include "ui/preview/imagedisplay.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLocalSocket>
#include <QPainter>
#include <QPushButton>
#include <QTest>
#include <QTextEdit>
#include <QThread>

#include <limits>
#include <memory>

namespace {

constexpr int rounds = 12;
constexpr double frameMs = 16;
constexpr double stated = std::numeric_limits<double>::infinity();
constexpr QSize fullHd(1920, 1080);

QByteArray screenshot(int number)
{
    QImage image(fullHd, QImage::Format_RGB32);
    image.fill(QColor::fromHsv(number * 50 % 360, 40, 250));
    QPainter painter(&image);
    for (int line = 0; line < 60; ++line) {
        painter.setPen(QColor::fromHsv(line * 6, 200, 160));
        painter.drawText(
            20, 18 * (line + 1),
            QStringLiteral("第%1行：请打开“设置”，选择“账号与安全”。").arg(line).repeated(4));
    }
    painter.end();
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

ServedReply answer(const QString &reply)
{
    const QJsonObject result{{QStringLiteral("resultType"), QStringLiteral("QA_NORMAL_RESULT")},
                             {QStringLiteral("reply"), reply}};
    return httpReply(QJsonDocument(QJsonObject{{QStringLiteral("errorCode"), QStringLiteral("0")},
                                               {QStringLiteral("result"), result}})
                         .toJson(QJsonDocument::Compact));
}

QString paragraphs(int count)
{
    QString reply;
    for (int number = 1; number <= count; ++number) {
        reply += QStringLiteral("<p>第%1步：请打开“设置”，选择“账号与安全”，点击“修改密码”，"
                                "按提示输入旧密码和新密码后保存。</p>")
                     .arg(number);
    }
    return reply;
}

QString pictures(int count)
{
    QString reply;
    for (int number = 0; number < count; ++number) {
        reply += QLatin1String("<p><img src=\"data:image/png;base64,")
               + QLatin1String(screenshot(number).toBase64())
               + QLatin1String("\" style=\"\"/></p>");
    }
    return reply;
}

double bareDecodeMs(const QByteArray &bytes)
{
    constexpr QSize shown(195, 110);
    return microseconds([&bytes, &shown] {
               QPixmap picture;
               picture.loadFromData(bytes);
               static_cast<void>(
                   picture.scaled(shown, Qt::KeepAspectRatio, Qt::SmoothTransformation));
           })
         / 1000;
}

/// The window at work, and the rows of what was measured at it.
class Actions
{
public:
    Actions()
    {
        const qint32 level = logLevelThreshold;
        logLevelThreshold = 0; // the window's bench waits for a line of the log
        m_bench = std::make_unique<WindowBench>();
        m_bench->startGreeted();
        logLevelThreshold = level;
        installLibrary();
    }

    Rows measure()
    {
        typing();
        suggestions();
        hotPage();
        longAnswer();
        picturesOfAnAnswer();
        folding();
        guardQuestion();
        localLibrary();
        zoom();
        secondStart();
        whatIsStatedToBlock();
        return m_rows;
    }

private:
    void typing();
    void suggestions();
    void hotPage();
    void longAnswer();
    void picturesOfAnAnswer();
    void folding();
    void guardQuestion();
    void localLibrary();
    void zoom();
    void secondStart();
    void whatIsStatedToBlock();

    /// The least of several rounds' longest stalls: what else the machine does only adds to one.
    double stall(const std::function<void()> &action, const std::function<void()> &after = {})
    {
        std::vector<double> longest;
        for (int round = 0; round < rounds; ++round) {
            longest.push_back(m_watch.longestDuring(action));
            if (after) {
                after();
                m_watch.longestDuring([] {});
            }
        }
        return least(longest);
    }

    void add(const char *id, const char *what, double ms, double atMost = frameMs)
    {
        m_rows.append({QLatin1String(id), QString::fromUtf8(what), QString(), QStringLiteral("ms"),
                       ms, 0, atMost});
    }

    void ask(const QString &question)
    {
        m_bench->input()->setPlainText(question);
        m_bench->window().send_messages();
    }

    static void installLibrary()
    {
        const QDir shipped(QStringLiteral(MIRAVEL_LOCAL_LIBRARY));
        QDir().mkpath(QStringLiteral("LocalQA"));
        const QStringList names = shipped.entryList(QDir::Files);
        for (const QString &name : names) {
            QFile::copy(shipped.filePath(name), QStringLiteral("LocalQA/") + name);
        }
    }

    [[nodiscard]] QARegion &region() const { return *m_bench->window().findChild<QARegion *>(); }

    std::unique_ptr<WindowBench> m_bench;
    StallWatch m_watch;
    Rows m_rows;
};

void Actions::typing()
{
    QTextEdit *input = m_bench->input();
    add("stall-typing", "stall: typing 20 characters",
        stall(
            [input] {
                for (int key = 0; key < 20; ++key) {
                    QTest::keyClick(input, static_cast<Qt::Key>(Qt::Key_A + key));
                    QCoreApplication::processEvents();
                }
            },
            [input] { input->clear(); }));
}

void Actions::suggestions()
{
    m_bench->serveSuggestions(20);
    add("stall-suggestions", "stall: 20 suggestions come up",
        stall(
            [this] {
                m_bench->input()->setPlainText(QStringLiteral("建议"));
                m_bench->window().showAssociation_process();
                if (m_bench->popup() == nullptr) {
                    qFatal("There are no suggestions");
                }
            },
            [this] {
                m_bench->input()->clear();
                m_bench->window().assoclose_windows();
            }));
}

void Actions::hotPage()
{
    add("stall-hot-page", "stall: the next page of hot questions",
        stall([this] { m_bench->button(QStringLiteral("换一换"))->click(); }));
}

void Actions::longAnswer()
{
    m_bench->server().setReplyFor(WindowBench::askPath, answer(paragraphs(30)));
    add("stall-answer", "stall: an answer of 30 paragraphs",
        stall([this] { ask(QStringLiteral("如何修改密码？")); }));
}

void Actions::picturesOfAnAnswer()
{
    m_bench->server().setReplyFor(WindowBench::askPath, answer(pictures(5)));
    const double longest = stall([this] { ask(QStringLiteral("有图的问题")); });
    const QByteArray bytes = screenshot(0);
    std::vector<double> bare;
    for (int round = 0; round < rounds; ++round) {
        bare.push_back(bareDecodeMs(bytes));
    }
    m_rows.append({QStringLiteral("stall-pictures"),
                   QStringLiteral("stall: an answer with 5 full-HD pictures"),
                   QStringLiteral("reading and scaling one of them"), QStringLiteral("ms"), longest,
                   least(bare), 1, 1.25});
}

void Actions::folding()
{
    m_bench->server().setReplyFor(WindowBench::askPath, answer(paragraphs(30)));
    ask(QStringLiteral("折叠"));
    QARegion &conversation = region();
    const int index = 2 * rounds; // after one answer each round of the two measurements before
    add("stall-fold", "stall: opening and folding a long answer", stall([&conversation, index] {
            conversation.FoldToOpen_answer(index);
            QCoreApplication::processEvents();
            conversation.OpenToFold_answer(index);
        }));
}

void Actions::guardQuestion()
{
    m_bench->server().setReplyFor(WindowBench::askPath, answer(paragraphs(2)));
    const QJsonObject question{{QStringLiteral("question"), QStringLiteral("如何修改密码？")}};
    add("stall-guard", "stall: a guard question and its answer",
        stall([this, question] { m_bench->window().sendSysguardQuest(question); }));
}

void Actions::localLibrary()
{
    QJsonArray questions;
    for (int number = 1; number <= 40; ++number) {
        questions.append(QJsonObject{{QStringLiteral("id"), number},
                                     {QStringLiteral("question"), QStringLiteral("问题")}});
    }
    add("stall-library", "stall: switching to the local library",
        stall([this] { m_bench->window().refreshLocalQA(); },
              [this, questions] { m_bench->window().refreshHotQuestions(questions); }));
}

void Actions::zoom()
{
    ImageDisplay preview;
    QPixmap picture;
    picture.loadFromData(screenshot(0));
    preview.PreviewWin(picture, QStringLiteral("图"), false, 0);
    preview.show();
    for (int step = 0; step < 60; ++step) {
        QMetaObject::invokeMethod(&preview, "magnifier_clicked");
    }
    add("stall-zoom", "stall: a zoom step of a full-HD picture at scale 4",
        stall([&preview] { QMetaObject::invokeMethod(&preview, "narrow_clicked"); },
              [&preview] { QMetaObject::invokeMethod(&preview, "magnifier_clicked"); }));
}

void Actions::secondStart()
{
    auto *app = qobject_cast<SingleApplication *>(QCoreApplication::instance());
    app->w = &m_bench->window();
    add("stall-second-start", "stall: a second start", stall([] {
            const std::unique_ptr<QThread> second(QThread::create([] {
                QLocalSocket socket;
                socket.connectToServer(
                    QFileInfo(QCoreApplication::applicationFilePath()).fileName());
                socket.waitForConnected();
            }));
            second->start();
            while (!second->wait(1)) {
                QCoreApplication::processEvents();
            }
        }));
    app->w = nullptr;
}

void Actions::whatIsStatedToBlock()
{
    constexpr int few = 3;
    std::vector<double> watch;
    std::vector<double> report;
    for (int round = 0; round < few; ++round) {
        watch.push_back(
            m_watch.longestDuring([this] { m_bench->window().detectionProcess_VdiAndOmbra(); }));
    }
    add("blocks-process-watch", "blocks, as stated: listing the processes", least(watch), stated);
    report.push_back(m_watch.longestDuring([this] { m_bench->window().itReport_url(); }));
    add("blocks-it-report", "blocks, as stated: the way to the IT department", least(report),
        stated);
}

} // namespace

Rows measureStalls()
{
    return Actions().measure();
}
