#include "ui/answer/bubble/answeritem.h"
#include "ui/answer/bubble/messagebubble.h"
#include "ui/answer/bubble/questionbubble.h"
#include "ui/answer/content/answercontent.h"
#include "ui/answer/conversationcopier.h"
#include "ui/answer/copymenu.h"
#include "ui/answer/picture/conversationpictures.h"
#include "ui/answer/picture/picturerow.h"

#include <QApplication>
#include <QBuffer>
#include <QClipboard>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

/// What is numbered how for copying, without an answer region.
class TestConversationCopier : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void entries_areNumberedByKind();
    void answers_titlesAndParagraphsAreNumberedThrough();
    void contextMenu_isRequestedByKindAndNumber();
    void pictures_areNumberedThroughAllAnswers();
    void menu_isGreyedWithoutASelection();
    void click_requestsTheCopy();
    void unknownText_isEmpty();

private:
    [[nodiscard]] AnswerItem *addAnswer(const QString &reply);
    static void openMenu(QWidget *widget) { emit widget->customContextMenuRequested({1, 1}); }
    static void select(QLabel *label) { label->setSelection(0, label->text().size()); }

    std::unique_ptr<QWidget> m_region;
    std::unique_ptr<ConversationPictures> m_pictures;
    ConversationCopier *m_copier = nullptr;
};

void TestConversationCopier::init()
{
    m_region = std::make_unique<QWidget>();
    m_pictures = std::make_unique<ConversationPictures>();
    m_copier = new ConversationCopier(*m_pictures, m_region.get());
}

void TestConversationCopier::cleanup()
{
    m_region.reset();
    m_pictures.reset();
}

AnswerItem *TestConversationCopier::addAnswer(const QString &reply)
{
    auto *answer = new AnswerItem(QStringLiteral("题"), m_region.get());
    answer->setReply(reply, QStringLiteral("题"), *m_pictures);
    m_copier->addAnswer(answer);
    return answer;
}

void TestConversationCopier::entries_areNumberedByKind()
{
    auto *message = new MessageBubble(QStringLiteral("消息"), m_region.get());
    auto *first = new QuestionBubble(QStringLiteral("问一"), m_region.get());
    auto *second = new QuestionBubble(QStringLiteral("问二"), m_region.get());
    m_copier->addEntry(message, ConversationCopier::Message);
    m_copier->addEntry(first, ConversationCopier::Question);
    m_copier->addEntry(second, ConversationCopier::Question);
    select(message->label());
    select(second->label());
    QCOMPARE(m_copier->selectedText(0, 4), QStringLiteral("消息"));
    QCOMPARE(m_copier->selectedText(0, 2), QString());
    QCOMPARE(m_copier->selectedText(1, 2), QStringLiteral("问二"));
    m_copier->copy(1, 2);
    QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("问二"));
}

void TestConversationCopier::answers_titlesAndParagraphsAreNumberedThrough()
{
    (void)addAnswer(QStringLiteral("<p>一</p><p>二</p>"));
    const AnswerItem *second = addAnswer(QStringLiteral("<p>三</p><p>四</p>"));
    select(second->titleLabel());
    second->content()->paragraphs().at(1)->setSelection(0, 1);
    QCOMPARE(m_copier->selectedText(1, 3), QStringLiteral("题"));
    QCOMPARE(m_copier->selectedText(3, 0), QStringLiteral("四"));
    QCOMPARE(m_copier->selectedText(2, 0), QString());
}

void TestConversationCopier::contextMenu_isRequestedByKindAndNumber()
{
    QSignalSpy requested(m_copier, &ConversationCopier::menuRequested);
    auto *question = new QuestionBubble(QStringLiteral("问"), m_region.get());
    m_copier->addEntry(question, ConversationCopier::Question);
    (void)addAnswer(QStringLiteral("<p>一</p>"));
    const AnswerItem *second = addAnswer(QStringLiteral("<p>二</p><p>三</p>"));
    openMenu(question->label());
    openMenu(second->titleLabel());
    openMenu(second->content()->paragraphs().at(1));
    QCOMPARE(requested, (QList<QVariantList>{{0, 2}, {1, 3}, {2, 0}}));
}

void TestConversationCopier::pictures_areNumberedThroughAllAnswers()
{
    QImage image(20, 20, QImage::Format_RGB32);
    image.fill(Qt::red);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QVERIFY(buffer.open(QIODevice::WriteOnly));
    QVERIFY(image.save(&buffer, "PNG"));
    const QString tag = QStringLiteral("<p><img src=\"data:image/png;base64,%1\" style=\"\"/></p>")
                            .arg(QLatin1String(bytes.toBase64()));
    (void)addAnswer(tag);
    const AnswerItem *second = addAnswer(tag + tag);
    QSignalSpy requested(m_copier, &ConversationCopier::menuRequested);
    for (const PictureRow *row : second->content()->pictureRows()) {
        openMenu(row->button());
    }
    QCOMPARE(requested, (QList<QVariantList>{{1, 1}, {2, 1}}));
}

void TestConversationCopier::menu_isGreyedWithoutASelection()
{
    auto *question = new QuestionBubble(QStringLiteral("问"), m_region.get());
    m_copier->addEntry(question, ConversationCopier::Question);
    m_copier->show(0, ConversationCopier::Question);
    QVERIFY(!m_region->findChild<CopyMenu *>()->findChild<QPushButton *>()->isEnabled());
    m_region->findChild<CopyMenu *>()->close();
    QTRY_VERIFY(m_region->findChild<CopyMenu *>() == nullptr);
    select(question->label());
    m_copier->show(0, ConversationCopier::Question);
    QVERIFY(m_region->findChild<CopyMenu *>()->findChild<QPushButton *>()->isEnabled());
}

void TestConversationCopier::click_requestsTheCopy()
{
    QSignalSpy requested(m_copier, &ConversationCopier::copyRequested);
    m_copier->show(5, ConversationCopier::Picture);
    QTest::mouseClick(m_region->findChild<CopyMenu *>()->findChild<QPushButton *>(),
                      Qt::LeftButton);
    QCOMPARE(requested, (QList<QVariantList>{{5, 1}}));
}

void TestConversationCopier::unknownText_isEmpty()
{
    QCOMPARE(m_copier->selectedText(0, 0), QString());
    QCOMPARE(m_copier->selectedText(-1, 2), QString());
    QCOMPARE(m_copier->selectedText(0, 77), QString());
    QCOMPARE(m_copier->selectedText(0, -1), QString());
}

QTEST_MAIN(TestConversationCopier)
#include "tst_conversationcopier.moc"
