#include "tests/ui/answer/list/sleeptest.h"
#include "tests/ui/support/picturereply.h"
#include "ui/answer/content/answercontent.h"
#include "ui/answer/conversationcopier.h"
#include "ui/answer/picture/picturerow.h"
#include "ui/preview/imagedisplay.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

namespace {

QByteArray picture(const QSize &size, const QColor &colour)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(colour);
    return encoded(image);
}

} // namespace

/// Answers with pictures sleep far from what is seen, and nobody may notice.
class TestSleepingPictures : public SleepTest
{
    Q_OBJECT

private slots:
    void answersWithPictures_sleepToo();
    void answerOfManyPictures_staysAwake();
    void wokenPictures_lookAsBefore();
    void wokenPicture_isPreviewedAndCopiedByItsNumber();
    void answerWithAnimation_staysAwakeWhileItPlays();
    void answerSleeps_onceItsPicturesAreDecoded();
};

void TestSleepingPictures::answersWithPictures_sleepToo()
{
    m_region->showAnswer(QStringLiteral("图"), tag("png", picture({300, 200}, Qt::red)));
    addExchanges(many);
    QVERIFY(!answers().at(0)->isAwake());
    QVERIFY(m_region->findChildren<PictureRow *>().isEmpty());
}

/// Making its rows again would take too long.
void TestSleepingPictures::answerOfManyPictures_staysAwake()
{
    m_region->showAnswer(QStringLiteral("图"), tag("png", picture({4, 4}, Qt::red)).repeated(51));
    QTRY_VERIFY(answers().first()->content()->maySleep());
    addExchanges(many);
    QVERIFY(answers().at(0)->isAwake());
}

void TestSleepingPictures::wokenPictures_lookAsBefore()
{
    m_region->showAnswer(QStringLiteral("图"),
                         QStringLiteral("<p>上</p>") + tag("png", picture({300, 100}, Qt::red))
                             + tag("png", "none") + QStringLiteral("<p>下</p>")
                             + tag("png", picture({60, 20}, Qt::blue)));
    bar()->setValue(0);
    letSleep();
    const int height = answers().first()->height();
    m_region->FoldToOpen_answer(0);
    const QImage before = answers().first()->grab().toImage();
    addExchanges(many);
    QVERIFY(!answers().first()->isAwake());
    bar()->setValue(0);
    QVERIFY(answers().first()->isAwake());
    QTRY_COMPARE(answers().first()->grab().toImage(), before);
    m_region->OpenToFold_answer(0);
    QCOMPARE(answers().first()->height(), height);
}

void TestSleepingPictures::wokenPicture_isPreviewedAndCopiedByItsNumber()
{
    m_region->showAnswer(QStringLiteral("图"), tag("png", picture({10, 10}, Qt::red)));
    m_region->showAnswer(QStringLiteral("图"), tag("png", picture({20, 10}, Qt::green))
                                                   + tag("png", picture({30, 10}, Qt::blue)));
    addExchanges(many);
    QVERIFY(!answers().at(1)->isAwake());
    m_region->qaRightHitMenu_copySlots(2, ConversationCopier::Picture);
    QCOMPARE(QApplication::clipboard()->pixmap().width(), 30);
    bar()->setValue(0);
    QTest::mouseClick(answers().at(1)->content()->pictureRows().at(1)->button(), Qt::LeftButton);
    QCOMPARE(m_region->preview()->currentIndex(), 2);
    QSignalSpy menus(answers().at(1), &AnswerItem::pictureMenuRequested);
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(1, 1));
    QApplication::sendEvent(answers().at(1)->content()->pictureRows().at(0)->button(), &event);
    QCOMPARE(menus, (QList<QVariantList>{{1}}));
}

void TestSleepingPictures::answerWithAnimation_staysAwakeWhileItPlays()
{
    QTemporaryDir folder;
    const QString before = QDir::currentPath();
    QDir::setCurrent(folder.path());
    QFile file(QStringLiteral(":/Images/waiting.gif"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    m_region->showAnswer(QStringLiteral("动图"), tag("gif", file.readAll()));
    addExchanges(many);
    QVERIFY(answers().at(0)->isAwake()); // or it would not go on where it rests
    QVERIFY(!answers().at(1)->isAwake());
    QDir::setCurrent(before);
}

void TestSleepingPictures::answerSleeps_onceItsPicturesAreDecoded()
{
    // Before that nobody knows its height: the header may promise what the data do not hold.
    m_region->showAnswer(QStringLiteral("图"), tag("png", picture({2000, 1000}, Qt::red)));
    PictureRow *row = answers().first()->content()->pictureRows().first();
    QVERIFY(row->label()->pixmap(Qt::ReturnByValue).isNull());
    QVERIFY(!answers().first()->content()->maySleep());
    QTRY_VERIFY(answers().first()->content()->maySleep());
    QCOMPARE(row->label()->pixmap(Qt::ReturnByValue).size(), QSize(220, 110));
    addExchanges(many);
    QVERIFY(!answers().at(0)->isAwake());
}

QTEST_MAIN(TestSleepingPictures)
#include "tst_sleepingpictures.moc"
