#include "ui/answer/content/answercontent.h"
#include "ui/answer/picture/conversationpictures.h"
#include "ui/answer/picture/picturerow.h"
#include "ui/preview/imagedisplay.h"

#include <QApplication>
#include <QBuffer>
#include <QClipboard>
#include <QLabel>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>

#include <limits>

/// The list of pictures and its preview, without a conversation.
class TestConversationPictures : public QObject
{
    Q_OBJECT

private slots:
    void openPreview_showsThePictureInAWindowOfItsOwn();
    void secondPreview_takesTheFirstOnesPlace();
    void secondList_hasAPreviewOfItsOwn();
    void next_goesOnToTheLast_andStaysThere();
    void picturesAddedLater_areReached();
    void copy_takesTheStillPicture();
    void copy_ofNoPicture_leavesTheClipboard();
    void preview_goesWithTheList();
    void rowPictures_takeLittleInAll();
    void droppedRowPicture_comesBackWhenItIsSeen();
    void dearPicture_isPreviewedOnceItIsDecoded();
    void dearPicture_thatIsLeft_isNotShown();
    void dearPicture_isCopiedOnceItIsDecoded();
    void dearPicture_isNotCopiedOverSomethingElse();
    void closedPreview_holdsNoPicture();

private:
    [[nodiscard]] static QByteArray encoded(const QSize &size);
    static void fill(ConversationPictures &pictures, int count);

    /// Adds one that takes long to decode, and one that does not.
    static void fillDear(ConversationPictures &pictures);

    static constexpr QSize dearSize{4000, 2500};
};

QByteArray TestConversationPictures::encoded(const QSize &size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::red);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

void TestConversationPictures::fill(ConversationPictures &pictures, int count)
{
    qint64 costLeft = AnswerContent::mostCostAtOnce;
    for (int i = 0; i < count; ++i) {
        (void)pictures.add(encoded({10 + i, 20}), QString::number(i), false, 1, costLeft);
    }
}

void TestConversationPictures::fillDear(ConversationPictures &pictures)
{
    qint64 costLeft = 0;
    (void)pictures.add(encoded(dearSize), QString(), false, 1, costLeft);
    fill(pictures, 1);
}

void TestConversationPictures::openPreview_showsThePictureInAWindowOfItsOwn()
{
    ConversationPictures pictures;
    fill(pictures, 2);
    QVERIFY(pictures.preview() == nullptr);
    const ImageDisplay *preview = pictures.openPreview(1);
    QCOMPARE(pictures.preview(), preview);
    QVERIFY(preview->isVisible());
    QVERIFY(preview->isWindow());
    QVERIFY(!preview->testAttribute(Qt::WA_QuitOnClose));
    QCOMPARE(preview->currentIndex(), 1);
}

void TestConversationPictures::secondPreview_takesTheFirstOnesPlace()
{
    ConversationPictures pictures;
    fill(pictures, 2);
    const QPointer<ImageDisplay> first = pictures.openPreview(0);
    pictures.openPreview(1);
    QVERIFY(first.isNull());
    QCOMPARE(pictures.preview()->currentIndex(), 1);
}

void TestConversationPictures::secondList_hasAPreviewOfItsOwn()
{
    ConversationPictures one;
    ConversationPictures other;
    fill(one, 1);
    fill(other, 1);
    const QPointer<ImageDisplay> first = one.openPreview(0);
    other.openPreview(0);
    QVERIFY(!first.isNull());
    QVERIFY(one.preview() != other.preview());
}

void TestConversationPictures::next_goesOnToTheLast_andStaysThere()
{
    ConversationPictures pictures;
    fill(pictures, 2);
    pictures.openPreview(0);
    pictures.showNextInPreview(1);
    QCOMPARE(pictures.preview()->currentIndex(), 1);
    pictures.preview()->setCurrentIndex(2);
    pictures.showNextInPreview(2);
    QCOMPARE(pictures.preview()->currentIndex(), 1);
    pictures.showInPreview(0);
    QCOMPARE(pictures.preview()->currentIndex(), 0);
}

void TestConversationPictures::picturesAddedLater_areReached()
{
    ConversationPictures pictures;
    fill(pictures, 1);
    pictures.openPreview(0);
    fill(pictures, 1);
    pictures.showNextInPreview(1);
    QCOMPARE(pictures.preview()->currentIndex(), 1);
}

void TestConversationPictures::copy_takesTheStillPicture()
{
    ConversationPictures pictures;
    fill(pictures, 3);
    pictures.copy(2);
    QCOMPARE(QApplication::clipboard()->pixmap().size(), QSize(12, 20));
}

void TestConversationPictures::copy_ofNoPicture_leavesTheClipboard()
{
    ConversationPictures pictures;
    fill(pictures, 1);
    QApplication::clipboard()->setText(QStringLiteral("before"));
    pictures.copy(1);
    pictures.copy(-1);
    QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("before"));
}

void TestConversationPictures::preview_goesWithTheList()
{
    QPointer<ImageDisplay> preview;
    {
        ConversationPictures pictures;
        fill(pictures, 1);
        preview = pictures.openPreview(0);
    }
    QVERIFY(preview.isNull());
}

void TestConversationPictures::rowPictures_takeLittleInAll()
{
    ConversationPictures pictures;
    const QByteArray data = encoded({430, 110}); // 185 KiB in a row
    qint64 costLeft = std::numeric_limits<qint64>::max();
    for (int i = 0; i < 400; ++i) {
        (void)pictures.add(data, QString(), false, 1, costLeft);
    }
    QVERIFY(pictures.shownBytes() <= ConversationPictures::mostShownBytes);
    QVERIFY(pictures.shownBytes() > ConversationPictures::mostShownBytes / 2);
    QVERIFY(pictures.at(0).shown.isNull());
    QCOMPARE(pictures.at(399).shown.size(), QSize(430, 110));
    QCOMPARE(pictures.decoded(0).size(), QSize(430, 110));
}

void TestConversationPictures::droppedRowPicture_comesBackWhenItIsSeen()
{
    ConversationPictures pictures;
    const QByteArray data = encoded({430, 110});
    qint64 costLeft = std::numeric_limits<qint64>::max();
    QWidget window;
    window.resize(500, 300);
    QVector<PictureRow *> rows;
    const auto add = [&] {
        const int number = pictures.add(data, QString(), false, 1, costLeft);
        rows.append(new PictureRow(&window));
        pictures.showIn(rows.last(), number);
        return rows.last()->label();
    };
    const QLabel *first = add();
    for (int i = 0; i < 200; ++i) {
        add();
    }
    QVERIFY(first->pixmap(Qt::ReturnByValue).isNull());
    QCOMPARE(rows.first()->size(), QSize(446, 114));
    for (PictureRow *row : qAsConst(rows)) {
        row->setVisible(row == rows.first());
    }
    window.show();
    QTRY_COMPARE(first->pixmap(Qt::ReturnByValue).size(), QSize(430, 110));
    for (int i = 0; i < 200; ++i) {
        add();
    }
    QVERIFY(!first->pixmap(Qt::ReturnByValue).isNull()); // it is seen
    QVERIFY(pictures.shownBytes() <= ConversationPictures::mostShownBytes);
}

void TestConversationPictures::dearPicture_isPreviewedOnceItIsDecoded()
{
    ConversationPictures pictures;
    fillDear(pictures);
    const auto *label
        = pictures.openPreview(0)->findChild<QLabel *>(QStringLiteral("pictureLabel"));
    QVERIFY(label->pixmap(Qt::ReturnByValue).isNull());
    QTRY_COMPARE(label->pixmap(Qt::ReturnByValue).size(), dearSize);
    pictures.showInPreview(1);
    QCOMPARE(label->pixmap(Qt::ReturnByValue).size(), QSize(10, 20));
    pictures.showInPreview(0);
    QVERIFY(label->pixmap(Qt::ReturnByValue).isNull()); // not both at a time
    QTRY_COMPARE(label->pixmap(Qt::ReturnByValue).size(), dearSize);
    QCOMPARE(pictures.preview()->currentIndex(), 0);
}

void TestConversationPictures::dearPicture_thatIsLeft_isNotShown()
{
    ConversationPictures pictures;
    fillDear(pictures);
    const auto *label
        = pictures.openPreview(0)->findChild<QLabel *>(QStringLiteral("pictureLabel"));
    pictures.showNextInPreview(1);
    pictures.copy(0); // comes after it
    QTRY_COMPARE(QApplication::clipboard()->image().size(), dearSize);
    QCOMPARE(label->pixmap(Qt::ReturnByValue).size(), QSize(10, 20));
}

void TestConversationPictures::dearPicture_isCopiedOnceItIsDecoded()
{
    ConversationPictures pictures;
    fillDear(pictures);
    const QSignalSpy changes(QApplication::clipboard(), &QClipboard::dataChanged);
    QApplication::clipboard()->setText(QStringLiteral("before"));
    QTRY_VERIFY(!changes.isEmpty()); // Windows tells of it later
    pictures.copy(0);
    QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("before"));
    QTRY_COMPARE(QApplication::clipboard()->image().size(), dearSize);
}

void TestConversationPictures::dearPicture_isNotCopiedOverSomethingElse()
{
    ConversationPictures pictures;
    fillDear(pictures);
    pictures.copy(0);
    QApplication::clipboard()->setText(QStringLiteral("later"));
    const auto *label
        = pictures.openPreview(0)->findChild<QLabel *>(QStringLiteral("pictureLabel"));
    QTRY_COMPARE(label->pixmap(Qt::ReturnByValue).size(), dearSize);
    pictures.copy(1);
    QCOMPARE(QApplication::clipboard()->pixmap().size(), QSize(10, 20));
    pictures.copy(0);
    pictures.copy(1); // changes its mind
    pictures.showInPreview(0);
    QTRY_COMPARE(label->pixmap(Qt::ReturnByValue).size(), dearSize);
    QCOMPARE(QApplication::clipboard()->pixmap().size(), QSize(10, 20));
}

void TestConversationPictures::closedPreview_holdsNoPicture()
{
    ConversationPictures pictures;
    fill(pictures, 1);
    ImageDisplay *preview = pictures.openPreview(0);
    const auto *label = preview->findChild<QLabel *>(QStringLiteral("pictureLabel"));
    QVERIFY(!label->pixmap(Qt::ReturnByValue).isNull());
    preview->close();
    QVERIFY(label->pixmap(Qt::ReturnByValue).isNull());
    preview->showMinimized();
    QVERIFY(label->pixmap(Qt::ReturnByValue).isNull());
}

QTEST_MAIN(TestConversationPictures)
#include "tst_conversationpictures.moc"
