#include "app/base/apppaths.h"
#include "resources/resources.h"
#include "tests/ui/support/picturereply.h"
#include "ui/answer/bubble/answeritem.h"
#include "ui/answer/bubble/messagebubble.h"
#include "ui/answer/bubble/questionbubble.h"
#include "ui/answer/content/answercontent.h"
#include "ui/answer/conversationcopier.h"
#include "ui/answer/copymenu.h"
#include "ui/answer/picture/picturerow.h"
#include "ui/answer/qaregion.h"

#include <QBuffer>
#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QMimeData>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

/// Copying from the conversation.
class TestCopyMenu : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void form();
    void nothingSelected_isGreyed_data();
    void nothingSelected_isGreyed();
    void selectedText_isCopied_data();
    void selectedText_isCopied();
    void textOfSeveralLines_keepsItsLines();
    void stillPicture_isCopiedWhole();
    void animatedPicture_isCopiedAsTheFirstFrameOfItsFile();
    void animatedPictureWithoutFile_copiesAnEmptyPicture();
    void menu_goesWithTheCopy();
    void secondMenu_replacesTheFirst();
    void unknownNumbers_copyNothing();

private:
    [[nodiscard]] QLabel *labelOf(int kind) const;
    void show(QLabel *label);
    [[nodiscard]] CopyMenu *menu() const { return m_region->findChild<CopyMenu *>(); }
    [[nodiscard]] QPushButton *item() const { return menu()->findChild<QPushButton *>(); }
    static void addKindRows();

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QARegion> m_region;
};

namespace {

QByteArray bytesOf(const QImage &image, const char *format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes;
}

QString rowStyle(const QString &colour)
{
    return QStringLiteral("QPushButton{text-align:left;padding-left:12px;margin-top:4px;"
                          "margin-bottom:6px;background-color:transparent;color: %1;font:14px;"
                          "border:none;}")
        .arg(colour);
}

} // namespace

void TestCopyMenu::initTestCase()
{
    initResources();
    initAppPaths(QString());
}

void TestCopyMenu::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QDir::setCurrent(m_folder->path());
    m_region = std::make_unique<QARegion>();
    m_region->resize(646, 490);
    m_region->show();
    QApplication::clipboard()->setText(QStringLiteral("before"));
    m_region->addQuestionBubble(QStringLiteral("用户的问题"));
    m_region->addRobotMessage(QStringLiteral("助手的消息"));
    m_region->showAnswer(QStringLiteral("答案的标题"), QStringLiteral("<p>答案的段落</p>"));
}

void TestCopyMenu::cleanup()
{
    m_region.reset();
    QDir::setCurrent(QDir::tempPath());
    m_folder.reset();
}

void TestCopyMenu::addKindRows()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("text");
    QTest::newRow("paragraph") << 0 << QStringLiteral("答案的段落");
    QTest::newRow("question") << 2 << QStringLiteral("用户的问题");
    QTest::newRow("title") << 3 << QStringLiteral("答案的标题");
    QTest::newRow("message") << 4 << QStringLiteral("助手的消息");
}

QLabel *TestCopyMenu::labelOf(int kind) const
{
    switch (kind) {
    case ConversationCopier::Question:
        return m_region->findChild<QuestionBubble *>()->label();
    case ConversationCopier::Message:
        return m_region->findChild<MessageBubble *>()->label();
    case ConversationCopier::Title:
        return m_region->findChild<AnswerItem *>()->titleLabel();
    default:
        return m_region->findChild<AnswerItem *>()->content()->paragraphs().first();
    }
}

void TestCopyMenu::show(QLabel *label)
{
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(3, 3));
    QApplication::sendEvent(label, &event);
}

void TestCopyMenu::form()
{
    m_region->qaRightHitMenu_show(0, ConversationCopier::Picture);
    QVERIFY(menu()->isVisible());
    QCOMPARE(menu()->size(), QSize(137, 37));
    QVERIFY(menu()->windowFlags().testFlag(Qt::FramelessWindowHint));
    QVERIFY(menu()->windowFlags().testFlag(Qt::NoDropShadowWindowHint));
    QVERIFY(menu()->testAttribute(Qt::WA_TranslucentBackground));
    QCOMPARE(item()->text(), QStringLiteral("复制"));
    QCOMPARE(item()->size(), QSize(135, 37));
    QCOMPARE(item()->focusPolicy(), Qt::NoFocus);
    const auto *hint = item()->findChild<QLabel *>();
    QCOMPARE(hint->text(), QStringLiteral("Ctrl+C"));
    QCOMPARE(hint->geometry(), QRect(88, 5, 38, 27));
    QVERIFY(item()->isEnabled());
    QCOMPARE(item()->styleSheet(),
             rowStyle(QStringLiteral("#1d2633"))
                 + QStringLiteral("QPushButton:hover{background-color: #f4f5f8;color: #1d2633;"
                                  "font:14px;border:none;}QPushButton:pressed{background-color: "
                                  "#f4f5f8;color: #1d2633;font:14px;border:none;}"));
    QCOMPARE(hint->styleSheet(), QStringLiteral("QLabel{background-color:transparent;"
                                                "color: #757575;font:12px;border:none;}"));
}

void TestCopyMenu::nothingSelected_isGreyed_data()
{
    addKindRows();
}

void TestCopyMenu::nothingSelected_isGreyed()
{
    QFETCH(int, kind);
    show(labelOf(kind));
    QVERIFY(!item()->isEnabled());
    QCOMPARE(item()->styleSheet(), rowStyle(QStringLiteral("#d0d2d9")));
    QCOMPARE(item()->findChild<QLabel *>()->styleSheet(),
             QStringLiteral("QLabel{background-color:transparent;color:#d0d2d9;font:12px;"
                            "border:none;}"));
    QTest::mouseClick(item(), Qt::LeftButton);
    QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("before"));
}

void TestCopyMenu::selectedText_isCopied_data()
{
    addKindRows();
}

void TestCopyMenu::selectedText_isCopied()
{
    QFETCH(int, kind);
    QFETCH(QString, text);
    labelOf(kind)->setSelection(0, text.size());
    show(labelOf(kind));
    QVERIFY(item()->isEnabled());
    QTest::mouseClick(item(), Qt::LeftButton);
    QCOMPARE(QApplication::clipboard()->text(), text);
}

void TestCopyMenu::textOfSeveralLines_keepsItsLines()
{
    m_region->showAnswer(QStringLiteral("t"), QStringLiteral("<p>一行<br>二行</p>"));
    QLabel *label = m_region->findChildren<AnswerItem *>().last()->content()->paragraphs().first();
    label->setSelection(0, 5);
    m_region->qaRightHitMenu_copySlots(1, ConversationCopier::Paragraph);
    QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("一行\n二行"));
}

void TestCopyMenu::stillPicture_isCopiedWhole()
{
    QImage image(800, 200, QImage::Format_RGB32);
    image.fill(Qt::darkGreen);
    m_region->showAnswer(QStringLiteral("t"), tag("png", bytesOf(image, "PNG")));
    const PictureRow *row
        = m_region->findChildren<AnswerItem *>().last()->content()->pictureRows().first();
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(3, 3));
    QApplication::sendEvent(row->button(), &event);
    QTest::mouseClick(item(), Qt::LeftButton);
    QCOMPARE(QApplication::clipboard()->pixmap().size(), QSize(800, 200));
}

void TestCopyMenu::animatedPicture_isCopiedAsTheFirstFrameOfItsFile()
{
    // One frame of 1 x 1 px, red (GIF89a).
    const QByteArray gif = QByteArray::fromHex("47494638396101000100800000ff0000ffffff"
                                               "2c00000000010001000002024401003b");
    m_region->showAnswer(QStringLiteral("t"), tag("gif", gif));
    QVERIFY(QFile::exists(QStringLiteral("gif/0.gif")));
    m_region->qaRightHitMenu_copySlots(0, ConversationCopier::Picture);
    const QImage copied = QApplication::clipboard()->image();
    QCOMPARE(copied.size(), QSize(1, 1));
    QCOMPARE(copied.pixelColor(0, 0), QColor(255, 0, 0));
}

void TestCopyMenu::animatedPictureWithoutFile_copiesAnEmptyPicture()
{
    const QByteArray gif = QByteArray::fromHex("47494638396101000100800000ff0000ffffff"
                                               "2c00000000010001000002024401003b");
    QVERIFY(QDir().mkpath(QStringLiteral("gif/0.gif"))); // a folder, so it cannot be written
    QTest::ignoreMessage(QtWarningMsg, "open file fail");
    m_region->showAnswer(QStringLiteral("t"), tag("gif", gif));
    m_region->qaRightHitMenu_copySlots(0, ConversationCopier::Picture);
    QVERIFY(QApplication::clipboard()->image().isNull());
}

void TestCopyMenu::menu_goesWithTheCopy()
{
    labelOf(ConversationCopier::Title)->setSelection(0, 2);
    show(labelOf(ConversationCopier::Title));
    QTest::mouseClick(item(), Qt::LeftButton);
    QTRY_VERIFY(menu() == nullptr);
}

void TestCopyMenu::secondMenu_replacesTheFirst()
{
    show(labelOf(ConversationCopier::Title));
    menu()->close();
    QTRY_VERIFY(menu() == nullptr);
    labelOf(ConversationCopier::Question)->setSelection(0, 2);
    show(labelOf(ConversationCopier::Question));
    QTest::mouseClick(item(), Qt::LeftButton);
    QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("用户"));
}

void TestCopyMenu::unknownNumbers_copyNothing()
{
    m_region->qaRightHitMenu_copySlots(99, ConversationCopier::Picture);
    QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("before"));
    m_region->qaRightHitMenu_copySlots(99, ConversationCopier::Title);
    QCOMPARE(QApplication::clipboard()->text(), QString());
    QApplication::clipboard()->setText(QStringLiteral("before"));
    m_region->qaRightHitMenu_copySlots(0, 77);
    QCOMPARE(QApplication::clipboard()->text(), QString());
}

QTEST_MAIN(TestCopyMenu)
#include "tst_copymenu.moc"
