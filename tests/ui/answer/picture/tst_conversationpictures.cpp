#include "ui/answer/picture/conversationpictures.h"
#include "ui/preview/imagedisplay.h"

#include <QApplication>
#include <QClipboard>
#include <QPointer>
#include <QTest>

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

private:
    static void fill(ConversationPictures &pictures, int count);
};

void TestConversationPictures::fill(ConversationPictures &pictures, int count)
{
    for (int i = 0; i < count; ++i) {
        QPixmap pixmap(10 + i, 20);
        pixmap.fill(Qt::red);
        pictures.all().append({pixmap, {}, QString::number(i), false, nullptr});
    }
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

QTEST_MAIN(TestConversationPictures)
#include "tst_conversationpictures.moc"
