#include "ui/answer/qaregion.h"

#include "app/base/logstream.h"
#include "service/reply/answer.h"
#include "ui/answer/bubble/answeritem.h"
#include "ui/answer/bubble/messagebubble.h"
#include "ui/answer/bubble/questionbubble.h"
#include "ui/answer/content/answercontent.h"
#include "ui/answer/copymenu.h"
#include "ui/answer/desktopuser.h"
#include "ui/answer/list/conversationlist.h"
#include "ui/answer/picture/picturerow.h"
#include "ui/answer/recommend/recommendbox.h"
#include "ui/answer/recommend/recommendonlyitem.h"
#include "ui/preview/imagedisplay.h"
#include "ui/style/shadow.h"

#include <QApplication>
#include <QClipboard>
#include <QCursor>
#include <QGraphicsDropShadowEffect>
#include <QGridLayout>
#include <QJsonDocument>
#include <QLabel>
#include <QPalette>
#include <QPushButton>
#include <QTextEdit>

namespace {

constexpr QSize formSize(400, 300);
constexpr QSize innerSize(647, 490);
constexpr QRect listPlace(1, 0, 648, 432);

QString titleOf(const QString &question, const QString &standardQuestion)
{
    return standardQuestion.isEmpty() ? question : standardQuestion;
}

QString noMatchText()
{
    return QARegion::tr("您好，未找到匹配的问题，请换一种说法试试看呢！");
}

/// Links in answers in the blue of the recommendations. The toolkit takes their colour from the
/// application's palette alone.
void colourLinks()
{
    QPalette palette = QApplication::palette();
    palette.setColor(QPalette::Link, QColor(41, 100, 245));
    QApplication::setPalette(palette);
}

} // namespace

QARegion::QARegion(QWidget *parent)
    : QWidget(parent)
{
    if (objectName().isEmpty()) {
        setObjectName(QStringLiteral("QARegion"));
    }
    colourLinks();
    resize(formSize);
    setWindowTitle(tr("Form"));
    auto *layout = new QGridLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    auto *inner = new QWidget(this);
    inner->setFixedSize(innerSize);
    inner->setStyleSheet(QStringLiteral("QWidget{background-color:white;border:none;}"));
    // All of the shadow lies outside this widget, where nothing of it is seen: painting the
    // conversation through the effect would only cost time and paint over what lies on top of it.
    addSurfaceShadow(inner)->setEnabled(false);
    layout->addWidget(inner);
    m_list = new ConversationList(inner);
    m_list->setGeometry(listPlace);
    m_measureLabel = new QLabel(inner);
    m_measureLabel->setTextFormat(Qt::PlainText);
    m_measureLabel->setStyleSheet(QStringLiteral("QLabel{font:14px Microsoft YaHei;}"));
    m_measureLabel->hide();
    m_userName = desktopUserName();
    if (m_userName.isEmpty()) {
        LOG_WARNING() << "Get the username failed.";
    }
}

QARegion::~QARegion() = default;

void QARegion::Miss_RecomSend(QString question, QString source, QString originalQuestion,
                              qint64 questionId)
{
    if (question.isEmpty()) {
        return;
    }
    addQuestionBubble(question);
    getAskAndAnswer_NoThread(question, source, originalQuestion, questionId);
}

void QARegion::getAskAndAnswer_NoThread(const QString &question, const QString &source,
                                        const QString &originalQuestion, qint64 questionId)
{
    const Answer answer = readAnswer(
        m_idp.Ask_And_Answer(question, m_userName, source, originalQuestion, questionId));
    showResult(question, answer);
    checkEmptyReply(answer.text);
}

QJsonArray QARegion::association_questions(const QString &text)
{
    return m_idp.association_questions(text);
}

void QARegion::showResult(const QString &question, const Answer &answer)
{
    LOG_DEBUG() << "nSize_Recom:" << answer.recommendations.size()
                << "reply_Type:" << answer.kindName;
    switch (answer.kind) {
    case AnswerKind::Plain:
        QA_NORMAL_RESULT(question, answer.title, answer.text);
        break;
    case AnswerKind::WithRecommendations:
        showMultiResult(question, answer);
        break;
    case AnswerKind::NoMatch:
        showNoResult(answer.recommendations.size(), answer.recommendations, question);
        break;
    case AnswerKind::Unknown:
        break;
    }
}

void QARegion::checkEmptyReply(const QString &reply)
{
    if (reply.isEmpty()) {
        isGetResponse();
    }
}

void QARegion::QA_NORMAL_RESULT(const QString &question, const QString &standardQuestion,
                                const QString &reply)
{
    LOG_INFO() << "Hit question, But no Recommend!";
    showAnswer(titleOf(question, standardQuestion), reply);
}

void QARegion::MULTI_QA_RESULT(const QString &question, const QString &standardQuestion,
                               const QString &reply, const QJsonValue &recommends)
{
    showMultiResult(question, {AnswerKind::WithRecommendations, QString(), standardQuestion, reply,
                               readRecommendations(recommends)});
}

void QARegion::showMultiResult(const QString &question, const Answer &answer)
{
    LOG_INFO() << "Hit question, and have Recommends!";
    showAnswerWithRecommends(titleOf(question, answer.title), answer.text, answer.recommendations,
                             question);
}

void QARegion::NO_RESULT(int count, const QJsonValue &recommends, const QString &question)
{
    showNoResult(count, readRecommendations(recommends), question);
}

void QARegion::showNoResult(int count, const QVector<ListedQuestion> &recommends,
                            const QString &question)
{
    if (count == 0) {
        LOG_INFO() << "No hits and no recommendation questions!";
        addRobotMessage(noMatchText());
    } else {
        LOG_INFO() << "There is no hit question, but there are recommendation questions!";
        showRecommendOnly(recommends, question);
    }
    scrollToBottom();
}

void QARegion::isGetResponse()
{
    if (m_endpoint.resolvedAddr().isEmpty()) {
        LOG_WARNING() << "Network problem! No reply.";
        addRobotMessage(tr("您好，我是Miravel，由于网络连接失败，暂时无法提供智能服务。"
                           "您可在“热门问答”区域查看常见问题。"));
        emit netproblem();
    } else {
        LOG_WARNING() << "The network is connected, but the reply is empty.";
        addRobotMessage(noMatchText());
    }
    scrollToBottom();
}

void QARegion::addQuestionBubble(const QString &text)
{
    auto *bubble = new QuestionBubble(text, m_list);
    addCopyMenu(bubble, QuestionMenu);
    bubble->show();
    scrollToBottom();
}

void QARegion::addRobotMessage(const QString &text)
{
    auto *bubble = new MessageBubble(text, m_list);
    addCopyMenu(bubble, MessageMenu);
    bubble->show();
}

void QARegion::showAnswer(const QString &title, const QString &reply)
{
    AnswerItem *answer = addAnswer(title, reply);
    const int index = m_answers.size() - 1;
    connect(answer, &AnswerItem::openRequested, this, [this, index] { FoldToOpen_answer(index); });
    connect(answer, &AnswerItem::retractRequested, this,
            [this, index] { OpenToFold_answer(index); });
    showAnswerItem(answer);
}

void QARegion::showAnswerWithRecommends(const QString &title, const QString &reply,
                                        const QVector<ListedQuestion> &recommends,
                                        const QString &question)
{
    AnswerItem *answer = addAnswer(title, reply);
    const int index = m_answers.size() - 1;
    const int box = m_answerBoxes.size();
    answer->setRecommends(recommends, m_measureLabel);
    m_answerBoxes.append(answer->box());
    connect(answer, &AnswerItem::openRequested, this,
            [this, index, box] { FoldToOpen_AnswerRecom(index, box, index); });
    connect(answer, &AnswerItem::retractRequested, this,
            [this, index, box] { OpenToFold_AnswerRecom(index, box, index); });
    connect(answer->box(), &RecommendBox::nextPageRequested, this,
            [this, box] { switchAnswerRecommends(box); });
    connectRows(answer->box(), question);
    showAnswerItem(answer);
}

AnswerItem *QARegion::addAnswer(const QString &title, const QString &reply)
{
    auto *answer = new AnswerItem(title, m_list);
    m_answers.append(answer);
    buildAnswerContent(reply, title, m_answers.size() - 1);
    return answer;
}

int QARegion::buildAnswerContent(const QString &reply, const QString &title, int answerIndex)
{
    AnswerItem *answer = m_answers.at(answerIndex);
    const int height = answer->setReply(reply, title, m_pictures);
    addAnswerCopyMenus(answer);
    connectPictures(*answer);
    return height;
}

void QARegion::showAnswerItem(AnswerItem *answer)
{
    answer->setFoldState(initialFoldState(answer->content()->contentHeight()));
    answer->show();
    scrollToBottom();
}

void QARegion::showRecommendOnly(const QVector<ListedQuestion> &recommends, const QString &question)
{
    auto *item = new RecommendOnlyItem(recommends, m_measureLabel, m_list);
    const int box = m_boxes.size();
    m_boxes.append(item->box());
    connect(item->box(), &RecommendBox::nextPageRequested, this,
            [this, box] { switchRecommendOnly(box); });
    connectRows(item->box(), question);
    item->show();
    scrollToBottom();
}

void QARegion::connectRows(RecommendBox *box, const QString &question)
{
    connect(box, &RecommendBox::recommendClicked, this,
            [this, question](const QString &recommended, qint64 questionId) {
                Miss_RecomSend(recommended, QStringLiteral("recommend"), question, questionId);
            });
}

void QARegion::switchRecommendOnly(int box)
{
    m_boxes.at(box)->showNextPage();
}

void QARegion::switchAnswerRecommends(int box)
{
    m_answerBoxes.at(box)->showNextPage();
}

void QARegion::FoldToOpen_AnswerRecom(int answer, int box, int line)
{
    Q_UNUSED(box)
    Q_UNUSED(line)
    FoldToOpen_answer(answer);
}

void QARegion::OpenToFold_AnswerRecom(int answer, int box, int line)
{
    Q_UNUSED(box)
    Q_UNUSED(line)
    OpenToFold_answer(answer);
}

void QARegion::FoldToOpen_answer(int answer)
{
    m_answers.at(answer)->setFoldState(FoldState::Opened);
}

void QARegion::OpenToFold_answer(int answer)
{
    m_answers.at(answer)->setFoldState(FoldState::Folded);
}

void QARegion::addCopyMenu(ConversationItem *item, MenuKind kind)
{
    const int num = m_texts[kind].size();
    m_texts[kind].append({item, 0});
    connect(item, &ConversationItem::copyMenuRequested, this,
            [this, num, kind] { qaRightHitMenu_show(num, kind); });
}

void QARegion::addAnswerCopyMenus(AnswerItem *answer)
{
    const int title = m_texts[TitleMenu].size();
    const int firstParagraph = m_texts[ParagraphMenu].size();
    m_texts[TitleMenu].append({answer, 0});
    for (int number = 1; number <= answer->content()->paragraphs().size(); ++number) {
        m_texts[ParagraphMenu].append({answer, number});
    }
    connect(answer, &ConversationItem::copyMenuRequested, this,
            [this, title, firstParagraph](int number) {
                number == 0 ? qaRightHitMenu_show(title, TitleMenu)
                            : qaRightHitMenu_show(firstParagraph + number - 1, ParagraphMenu);
            });
}

void QARegion::connectPictures(const AnswerItem &answer)
{
    const QVector<PictureRow *> &rows = answer.content()->pictureRows();
    int num = m_pictures.size() - rows.size();
    for (const PictureRow *row : rows) {
        connect(row->button(), &QWidget::customContextMenuRequested, this,
                [this, num] { qaRightHitMenu_show(num, PictureMenu); });
        connect(row->button(), &QPushButton::clicked, this, [this, num] { picture_preview(num); });
        ++num;
    }
}

ImageDisplay *QARegion::preview() const
{
    return imagePreview.get();
}

void QARegion::picture_preview(int k)
{
    const ConversationPicture &picture = m_pictures.at(k);
    imagePreview.reset(); // one window at a time
    imagePreview = std::make_unique<ImageDisplay>();
    imagePreview->PreviewWin(picture.pixmap, picture.title, picture.animated, k);
    connect(imagePreview.get(), &ImageDisplay::previousImage_signal, this,
            &QARegion::changeToPreviousImg);
    connect(imagePreview.get(), &ImageDisplay::nextImage_signal, this, &QARegion::changeToNextImg);
    imagePreview->show();
    imagePreview->setAttribute(Qt::WA_QuitOnClose, false);
}

void QARegion::changeToPreviousImg(int k)
{
    const ConversationPicture &picture = m_pictures.at(k);
    imagePreview->changeImage(picture.pixmap, picture.title, picture.animated, k);
}

void QARegion::changeToNextImg(int k)
{
    if (k < m_pictures.size()) {
        changeToPreviousImg(k);
    } else {
        imagePreview->setCurrentIndex(m_pictures.size() - 1);
    }
}

void QARegion::qaRightHitMenu_show(int num, int type)
{
    const bool enabled = type == PictureMenu || !selectedText(num, type).isEmpty();
    m_rightHitMenu = new CopyMenu(enabled, this);
    connect(m_rightHitMenu, &CopyMenu::copyRequested, this,
            [this, num, type] { qaRightHitMenu_copySlots(num, type); });
    m_rightHitMenu->move(QCursor::pos());
    m_rightHitMenu->show();
}

void QARegion::qaRightHitMenu_copySlots(int num, int type)
{
    if (type == PictureMenu) {
        copyPicture(num);
    } else {
        // Line and paragraph separators of the label become line ends.
        QTextEdit text(this);
        text.setPlainText(selectedText(num, type));
        QApplication::clipboard()->setText(text.toPlainText());
    }
    if (m_rightHitMenu != nullptr) {
        m_rightHitMenu->close(); // which deletes it
    }
}

QString QARegion::selectedText(int num, int type) const
{
    if (type < ParagraphMenu || type > MessageMenu || num < 0 || num >= m_texts[type].size()) {
        return {};
    }
    const ConversationText &text = m_texts[type].at(num);
    const QLabel *label = text.item->text(text.number); // none while nothing is selected far away
    return label == nullptr ? QString() : label->selectedText();
}

void QARegion::copyPicture(int num) const
{
    if (num < 0 || num >= m_pictures.size()) {
        return;
    }
    const ConversationPicture &picture = m_pictures.at(num);
    if (picture.animated && !picture.pixmap.isNull()) {
        QApplication::clipboard()->setImage(QImage(animationFile(num)));
    } else {
        QApplication::clipboard()->setPixmap(picture.pixmap);
    }
}

void QARegion::reveal(const QWidget *widget)
{
    if (m_list->viewport()->isAncestorOf(widget)) {
        m_list->reveal(widget);
    }
}

void QARegion::scrollToBottom()
{
    m_list->scrollToBottom();
}
