#include "app/base/apppaths.h"
#include "resources/resources.h"
#include "ui/answer/bubble/answeritem.h"
#include "ui/answer/content/answercontent.h"
#include "ui/answer/picture/picturerow.h"
#include "ui/answer/qaregion.h"
#include "ui/preview/imagedisplay.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QMovie>
#include <QPointer>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

/// From a picture of the conversation to the preview window, and paging in it.
class TestPicturePreview : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void click_opensThePreview();
    void secondClick_replacesThePreview();
    void position_countsThePicturesOfTheConversation();
    void closingThePreview_doesNotEndTheProgram();
    void paging_goesThroughAllAnswers();
    void pagingToAnAnimation_playsIt();
    void nextPastTheEnd_staysAtTheLast();
    void newPicturesWhileOpen_canBeReached();
    void regionGoes_withThePreviewOpen();

private:
    void showPicture(const QColor &colour);
    [[nodiscard]] QPushButton *pictureButton(int number) const;
    void clickNext() const;

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QARegion> m_region;
};

void TestPicturePreview::initTestCase()
{
    initResources();
    initAppPaths(QString());
}

void TestPicturePreview::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QDir::setCurrent(m_folder->path());
    m_region = std::make_unique<QARegion>();
    m_region->resize(646, 490);
    m_region->show();
    showPicture(Qt::red);
    showPicture(Qt::green);
    showPicture(Qt::blue);
}

void TestPicturePreview::cleanup()
{
    m_region.reset();
    QDir::setCurrent(QDir::tempPath());
    m_folder.reset();
}

void TestPicturePreview::showPicture(const QColor &colour)
{
    QImage image(60, 40, QImage::Format_RGB32);
    image.fill(colour);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    m_region->showAnswer(colour.name(),
                         QStringLiteral("<p><img src=\"data:image/png;base64,%1\" style=\"\"/></p>")
                             .arg(QLatin1String(bytes.toBase64())));
}

QPushButton *TestPicturePreview::pictureButton(int number) const
{
    const auto answers = m_region->findChildren<AnswerItem *>();
    return answers.at(number)->content()->pictureRows().first()->button();
}

void TestPicturePreview::clickNext() const
{
    const auto buttons = m_region->preview()->findChildren<QPushButton *>();
    for (QPushButton *button : buttons) {
        if (button->accessibleName() == QStringLiteral("下一张")) {
            button->click();
        }
    }
}

void TestPicturePreview::click_opensThePreview()
{
    QVERIFY(m_region->preview() == nullptr);
    QTest::mouseClick(pictureButton(1), Qt::LeftButton);
    QVERIFY(m_region->preview()->isVisible());
    QVERIFY(m_region->preview()->isWindow());
    QCOMPARE(m_region->preview()->currentIndex(), 1);
}

void TestPicturePreview::secondClick_replacesThePreview()
{
    QTest::mouseClick(pictureButton(1), Qt::LeftButton);
    const QPointer<ImageDisplay> first = m_region->preview();
    QTest::mouseClick(pictureButton(2), Qt::LeftButton);
    QVERIFY(first.isNull());
    QCOMPARE(m_region->preview()->currentIndex(), 2);
}

void TestPicturePreview::position_countsThePicturesOfTheConversation()
{
    m_region->picture_preview(1);
    const auto *position
        = m_region->preview()->findChild<QLabel *>(QStringLiteral("picturePosition"));
    QCOMPARE(position->text(), QStringLiteral("2 / 3"));
    clickNext();
    QCOMPARE(position->text(), QStringLiteral("3 / 3"));
    clickNext(); // there is no other
    QCOMPARE(position->text(), QStringLiteral("3 / 3"));
    showPicture(Qt::yellow);
    QCOMPARE(position->text(), QStringLiteral("3 / 4"));
}

void TestPicturePreview::closingThePreview_doesNotEndTheProgram()
{
    m_region->picture_preview(0);
    QVERIFY(!m_region->preview()->testAttribute(Qt::WA_QuitOnClose));
    m_region->preview()->close();
    QVERIFY(!m_region->preview()->isVisible());
    m_region->picture_preview(0);
    QVERIFY(m_region->preview()->isVisible());
}

void TestPicturePreview::paging_goesThroughAllAnswers()
{
    m_region->picture_preview(1);
    ImageDisplay *preview = m_region->preview();
    preview->setCurrentIndex(0);
    emit preview->previousImage_signal(0);
    QCOMPARE(preview->currentIndex(), 0);
    emit preview->nextImage_signal(2);
    QCOMPARE(preview->currentIndex(), 2);
}

void TestPicturePreview::pagingToAnAnimation_playsIt()
{
    QFile file(QStringLiteral(":/Images/waiting.gif"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    m_region->showAnswer(QStringLiteral("动"),
                         QStringLiteral("<p><img src=\"data:image/gif;base64,%1\" style=\"\"/></p>")
                             .arg(QLatin1String(file.readAll().toBase64())));
    m_region->picture_preview(2);
    const auto playing = [this] {
        const auto movies = m_region->preview()->findChildren<QMovie *>();
        return movies.isEmpty() ? QString() : movies.first()->fileName();
    };
    QCOMPARE(playing(), QString());
    clickNext();
    QCOMPARE(m_region->preview()->currentIndex(), 3);
    QTRY_COMPARE(playing(), QStringLiteral("gif/3.gif"));
}

void TestPicturePreview::nextPastTheEnd_staysAtTheLast()
{
    m_region->picture_preview(2);
    m_region->preview()->setCurrentIndex(3);
    emit m_region->preview()->nextImage_signal(3);
    QCOMPARE(m_region->preview()->currentIndex(), 2);
}

void TestPicturePreview::newPicturesWhileOpen_canBeReached()
{
    m_region->picture_preview(2);
    showPicture(Qt::yellow);
    emit m_region->preview()->nextImage_signal(3);
    QCOMPARE(m_region->preview()->currentIndex(), 3);
}

void TestPicturePreview::regionGoes_withThePreviewOpen()
{
    m_region->picture_preview(0);
    const QPointer<ImageDisplay> preview = m_region->preview();
    m_region.reset();
    QVERIFY(preview.isNull());
}

QTEST_MAIN(TestPicturePreview)
#include "tst_picturepreview.moc"
