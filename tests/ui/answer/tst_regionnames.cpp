#include "app/base/apppaths.h"
#include "resources/resources.h"
#include "service/reply/listedquestion.h"
#include "service/request/idpinterface.h"
#include "ui/answer/bubble/answeritem.h"
#include "ui/answer/bubble/messagebubble.h"
#include "ui/answer/content/answercontent.h"
#include "ui/answer/picture/picturerow.h"
#include "ui/answer/qaregion.h"
#include "ui/answer/recommend/recommendpage.h"
#include "ui/text/textwrap.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFontMetrics>
#include <QLabel>
#include <QListWidget>
#include <QMetaMethod>
#include <QMovie>
#include <QTemporaryDir>
#include <QTest>

#include <type_traits>

namespace {

template <typename Member, typename Expected>
constexpr bool isExactly = std::is_same_v<Member, Expected>;

// The operations that have their names and signatures for good.
static_assert(isExactly<decltype(&QARegion::Miss_RecomSend),
                        void (QARegion::*)(QString, QString, QString, qint64)>);
static_assert(isExactly<decltype(&QARegion::getAskAndAnswer_NoThread),
                        void (QARegion::*)(QString, QString, QString, qint64)>);
static_assert(isExactly<decltype(&QARegion::addQuestionBubble), void (QARegion::*)(QString)>);
static_assert(isExactly<decltype(&QARegion::addRobotMessage), void (QARegion::*)(QString)>);
static_assert(isExactly<decltype(&QARegion::QA_NORMAL_RESULT),
                        void (QARegion::*)(QString, QString, QString)>);
static_assert(isExactly<decltype(&QARegion::MULTI_QA_RESULT),
                        void (QARegion::*)(QString, QString, QString, QJsonValue)>);
static_assert(
    isExactly<decltype(&QARegion::NO_RESULT), void (QARegion::*)(int, QJsonValue, QString)>);
static_assert(isExactly<decltype(&QARegion::isGetResponse), void (QARegion::*)()>);
static_assert(isExactly<decltype(&QARegion::checkEmptyReply), void (QARegion::*)(QString)>);
static_assert(isExactly<decltype(&QARegion::showAnswer), void (QARegion::*)(QString, QString)>);
static_assert(
    isExactly<decltype(&QARegion::switchRecommendOnly), void (QARegion::*)(int, QString)>);
static_assert(
    isExactly<decltype(&QARegion::switchAnswerRecommends), void (QARegion::*)(int, QString)>);
static_assert(
    isExactly<decltype(&QARegion::buildAnswerContent), int (QARegion::*)(QString, QString, int)>);
static_assert(isExactly<decltype(&QARegion::save_gif), void (*)(QString, QString, QString)>);
static_assert(
    isExactly<decltype(&QARegion::setPicture), void (QARegion::*)(QString, QString, int)>);
static_assert(
    isExactly<decltype(&QARegion::fitPictureRow), void (QARegion::*)(QString, int, int, int)>);
static_assert(isExactly<decltype(&QARegion::wrapToWidth), QString (*)(QFontMetrics, QString, int)>);

/// The signatures of the methods of \a type that the class itself declares, in their order.
QList<QByteArray> ownMethods(QMetaMethod::MethodType type)
{
    QList<QByteArray> signatures;
    const QMetaObject &meta = QARegion::staticMetaObject;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        if (meta.method(i).methodType() == type) {
            signatures.append(meta.method(i).methodSignature());
        }
    }
    return signatures;
}

QString pictureTag(const QSize &size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::red);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return QStringLiteral("<p><img src=\"data:image/png;base64,%1\" style=\"\"/></p>")
        .arg(QLatin1String(bytes.toBase64()));
}

/// One frame of 1 x 1 px (GIF89a).
QByteArray smallGif()
{
    return QByteArray::fromHex("47494638396101000100800000ff0000ffffff"
                               "2c00000000010001000002024401003b");
}

const QString stillPart = QStringLiteral("<img src=\"data:image/png;base64,\"");
const QString animatedPart = QStringLiteral("<img src=\"data:image/gif;base64,\"");

} // namespace

/// The names of the answer region that others count on: what they are called with, and that each
/// does what it says.
class TestRegionNames : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void signalsOfTheRegion();
    void slots_inTheirOrder();
    void saveGif_writesAnimationsOnly();
    void setPicture_showsAStillPictureInItsRow();
    void setPicture_playsAnAnimationInItsRow();
    void fitPictureRow_lowersTheRowAndItsItem();
    void fitPictureRow_leavesAnAnimationAlone();
    void wrapToWidth_breaksAsBubblesDo();
    void checkEmptyReply_speaksOnlyWithoutAReply();
    void switches_showTheNextPage();

private:
    [[nodiscard]] PictureRow *addPicture(const QString &reply);

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QARegion> m_region;
};

void TestRegionNames::initTestCase()
{
    initResources();
    initAppPaths(QString());
}

void TestRegionNames::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QDir::setCurrent(m_folder->path());
    m_region = std::make_unique<QARegion>();
    m_region->show();
}

void TestRegionNames::cleanup()
{
    m_region.reset();
    QDir::setCurrent(QDir::tempPath());
    m_folder.reset();
}

PictureRow *TestRegionNames::addPicture(const QString &reply)
{
    m_region->showAnswer(QStringLiteral("题"), reply);
    return m_region->findChildren<AnswerItem *>().last()->content()->pictureRows().first();
}

void TestRegionNames::signalsOfTheRegion()
{
    QCOMPARE(ownMethods(QMetaMethod::Signal),
             (QList<QByteArray>{"beginGetAskAndAnswer(QString)", "netproblem()"}));
}

void TestRegionNames::slots_inTheirOrder()
{
    QCOMPARE(ownMethods(QMetaMethod::Slot),
             (QList<QByteArray>{
                 "FoldToOpen_AnswerRecom(int,int,int)", "OpenToFold_AnswerRecom(int,int,int)",
                 "FoldToOpen_answer(int)", "OpenToFold_answer(int)",
                 "Miss_RecomSend(QString,QString,QString,qlonglong)", "picture_preview(int)",
                 "changeToPreviousImg(int)", "changeToNextImg(int)", "qaRightHitMenu_show(int,int)",
                 "qaRightHitMenu_copySlots(int,int)"}));
}

void TestRegionNames::saveGif_writesAnimationsOnly()
{
    const QString data = QString::fromLatin1(smallGif().toBase64());
    QARegion::save_gif(stillPart, data, QStringLiteral("gif/7.gif"));
    QVERIFY(!QFile::exists(QStringLiteral("gif/7.gif")));
    QARegion::save_gif(animatedPart, data, QStringLiteral("gif/7.gif"));
    QFile file(QStringLiteral("gif/7.gif"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), smallGif());
}

void TestRegionNames::setPicture_showsAStillPictureInItsRow()
{
    const PictureRow *first = addPicture(pictureTag({100, 50}));
    const PictureRow *second = addPicture(pictureTag({60, 40}));
    first->label()->clear();
    m_region->setPicture(stillPart, QString(), 0);
    QCOMPARE(first->label()->pixmap(Qt::ReturnByValue).size(), QSize(100, 50));
    QCOMPARE(second->label()->pixmap(Qt::ReturnByValue).size(), QSize(60, 40));
}

void TestRegionNames::setPicture_playsAnAnimationInItsRow()
{
    const PictureRow *row = addPicture(pictureTag({100, 50}));
    QARegion::save_gif(animatedPart, QString::fromLatin1(smallGif().toBase64()),
                       QStringLiteral("gif/0.gif"));
    m_region->setPicture(animatedPart, QStringLiteral("gif/0.gif"), 0);
    QVERIFY(row->label()->movie() != nullptr);
    QCOMPARE(row->label()->movie()->fileName(), QStringLiteral("gif/0.gif"));
    QVERIFY(row->label()->hasScaledContents());
}

void TestRegionNames::fitPictureRow_lowersTheRowAndItsItem()
{
    PictureRow *row = addPicture(pictureTag({100, 50}));
    const auto *list = m_region->findChild<AnswerItem *>()->content();
    row->label()->resize(40, 110); // as if the picture were to be shown narrower
    m_region->setPicture(stillPart, QString(), 0);
    m_region->fitPictureRow(stillPart, 0, 0, 40);
    QCOMPARE(row->size(), QSize(446, 24));
    QCOMPARE(row->label()->geometry(), QRect(0, 4, 40, 20));
    QCOMPARE(list->item(0)->sizeHint(), QSize(446, 24));
}

void TestRegionNames::fitPictureRow_leavesAnAnimationAlone()
{
    const PictureRow *row = addPicture(pictureTag({100, 50}));
    m_region->fitPictureRow(animatedPart, 0, 0, 10);
    QCOMPARE(row->size(), QSize(446, 54));
}

void TestRegionNames::wrapToWidth_breaksAsBubblesDo()
{
    const QFontMetrics metrics(m_region->font());
    const QString text = QStringLiteral("很长的问题").repeated(40);
    const QString broken = QARegion::wrapToWidth(metrics, text, 446);
    QVERIFY(broken.contains(QLatin1Char('\n')));
    QCOMPARE(broken, brokenToWidth(metrics, text, 446));
}

void TestRegionNames::checkEmptyReply_speaksOnlyWithoutAReply()
{
    m_region->checkEmptyReply(QStringLiteral("x"));
    QCOMPARE(m_region->findChildren<MessageBubble *>().size(), 0);
    m_region->checkEmptyReply(QString());
    QCOMPARE(m_region->findChildren<MessageBubble *>().size(), 1);
}

void TestRegionNames::switches_showTheNextPage()
{
    m_region->showRecommendOnly({}, QStringLiteral("问"));
    m_region->showAnswerWithRecommends(QStringLiteral("题"), QStringLiteral("<p>段</p>"), {},
                                       QStringLiteral("问"));
    QCOMPARE(m_region->findChildren<RecommendPage *>().size(), 2);
    m_region->switchRecommendOnly(0, QStringLiteral("问"));
    QCOMPARE(m_region->findChildren<RecommendPage *>().size(), 3);
    m_region->switchAnswerRecommends(0, QStringLiteral("问"));
    QCOMPARE(m_region->findChildren<RecommendPage *>().size(), 4);
}

QTEST_MAIN(TestRegionNames)
#include "tst_regionnames.moc"
