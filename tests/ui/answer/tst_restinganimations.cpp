#include "app/base/apppaths.h"
#include "resources/resources.h"
#include "ui/answer/bubble/answeritem.h"
#include "ui/answer/content/answercontent.h"
#include "ui/answer/list/conversationlist.h"
#include "ui/answer/picture/picturerow.h"
#include "ui/answer/qaregion.h"
#include "ui/preview/imagedisplay.h"

#include <QDir>
#include <QFile>
#include <QLabel>
#include <QMovie>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

/// Animations play while they are seen, and only then.
class TestRestingAnimations : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void inView_playsOn();
    void scrolledOut_rests_andGoesOnWhenSeen();
    void foldedAway_rests_untilItIsUnfolded();
    void hiddenWindow_rests();
    void minimisedWindow_rests();
    void minimisedPreview_rests();
    void pausedByAnother_staysPaused();

private:
    [[nodiscard]] QString animation() const;
    [[nodiscard]] QMovie *movie() const;
    void showAnimation(const QString &before = QString());

    QTemporaryDir m_work; ///< for the files of the animations
    std::unique_ptr<QARegion> m_region;
};

namespace {

/// Waits until \a movie rests; then no frame comes any more.
bool rests(const QMovie *movie)
{
    const bool paused = QTest::qWaitFor([movie] { return movie->state() == QMovie::Paused; }, 3000);
    QSignalSpy frames(movie, &QMovie::frameChanged);
    return paused && !frames.wait(300);
}

/// Whether \a movie shows several more frames.
bool plays(const QMovie *movie)
{
    QSignalSpy frames(movie, &QMovie::frameChanged);
    return QTest::qWaitFor([&frames] { return frames.size() >= 5; }, 5000);
}

} // namespace

void TestRestingAnimations::initTestCase()
{
    initResources();
    initAppPaths(QString());
    QVERIFY(m_work.isValid());
    QDir::setCurrent(m_work.path());
}

void TestRestingAnimations::init()
{
    m_region = std::make_unique<QARegion>();
    m_region->resize(646, 490);
    m_region->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_region.get()));
}

void TestRestingAnimations::cleanup()
{
    m_region.reset();
}

/// The program's own moving picture.
QString TestRestingAnimations::animation() const
{
    QFile file(QStringLiteral(":/Images/waiting.gif"));
    return file.open(QIODevice::ReadOnly)
             ? QStringLiteral("<p><img src=\"data:image/gif;base64,%1\" style=\"\"/></p>")
                   .arg(QLatin1String(file.readAll().toBase64()))
             : QString();
}

void TestRestingAnimations::showAnimation(const QString &before)
{
    m_region->showAnswer(QStringLiteral("动图"), before + animation());
}

QMovie *TestRestingAnimations::movie() const
{
    const AnswerItem *answer = m_region->findChild<AnswerItem *>();
    return answer->content()->pictureRows().first()->label()->movie();
}

void TestRestingAnimations::inView_playsOn()
{
    showAnimation();
    QVERIFY(plays(movie()));
    QVERIFY(plays(movie()));
    QCOMPARE(movie()->state(), QMovie::Running);
}

void TestRestingAnimations::scrolledOut_rests_andGoesOnWhenSeen()
{
    showAnimation();
    QVERIFY(plays(movie()));
    for (int i = 0; i < 10; ++i) {
        m_region->addQuestionBubble(QStringLiteral("问题"));
    }
    QVERIFY(rests(movie()));
    m_region->findChild<ConversationList *>()->verticalScrollBar()->setValue(0);
    QVERIFY(plays(movie()));
    m_region->scrollToBottom();
    QVERIFY(rests(movie()));
}

void TestRestingAnimations::foldedAway_rests_untilItIsUnfolded()
{
    showAnimation(QStringLiteral("<p>一行文字</p>").repeated(12));
    QVERIFY(rests(movie()));
    m_region->FoldToOpen_answer(0);
    m_region->scrollToBottom();
    QVERIFY(plays(movie()));
    m_region->OpenToFold_answer(0);
    QVERIFY(rests(movie()));
}

void TestRestingAnimations::hiddenWindow_rests()
{
    showAnimation();
    QVERIFY(plays(movie()));
    m_region->hide();
    QVERIFY(rests(movie()));
    m_region->show();
    QVERIFY(plays(movie()));
}

void TestRestingAnimations::minimisedWindow_rests()
{
    showAnimation();
    QVERIFY(plays(movie()));
    m_region->showMinimized();
    QVERIFY(rests(movie()));
    m_region->showNormal();
    QVERIFY(plays(movie()));
}

void TestRestingAnimations::minimisedPreview_rests()
{
    showAnimation();
    m_region->picture_preview(0);
    ImageDisplay *preview = m_region->preview();
    QVERIFY(QTest::qWaitForWindowExposed(preview));
    const QMovie *shown = preview->findChild<QMovie *>();
    QVERIFY(shown != nullptr);
    QVERIFY(plays(shown));
    preview->showMinimized();
    QVERIFY(rests(shown));
    preview->showNormal();
    QVERIFY(plays(shown));
}

void TestRestingAnimations::pausedByAnother_staysPaused()
{
    showAnimation();
    QVERIFY(plays(movie()));
    movie()->setPaused(true);
    m_region->repaint();
    QVERIFY(rests(movie()));
}

QTEST_MAIN(TestRestingAnimations)
#include "tst_restinganimations.moc"
