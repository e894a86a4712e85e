#include "ui/answer/qaregion.h"

#include "app/base/logstream.h"
#include "service/reply/answer.h"
#include "ui/answer/bubble/answeritem.h"
#include "ui/answer/bubble/messagebubble.h"
#include "ui/answer/bubble/questionbubble.h"
#include "ui/answer/content/answercontent.h"
#include "ui/answer/conversationcopier.h"
#include "ui/answer/list/conversationlist.h"
#include "ui/answer/picture/base64.h"
#include "ui/answer/picture/inlinepicture.h"
#include "ui/answer/picture/picturereading.h"
#include "ui/answer/picture/picturerow.h"
#include "ui/answer/questioncycle.h"
#include "ui/answer/recommend/recommendonlyitem.h"
#include "ui/answer/waitingdots.h"
#include "ui/preview/imagedisplay.h"
#include "ui/style/surfaceshadow.h"
#include "ui/text/reader/readerinterfaces.h"
#include "ui/text/richtext.h"
#include "ui/text/textwrap.h"

#include <QApplication>
#include <QFontMetrics>
#include <QGridLayout>
#include <QLabel>
#include <QPalette>
#include <QPushButton>

namespace {

constexpr QSize formSize(400, 300);
constexpr QSize innerSize(647, 490);
constexpr QRect listPlace(1, 0, ConversationItem::itemWidth, 432);

/// The service's title is rich text; the user's own words are shown as they were typed.
QString titleOf(const QString &question, const QString &standardQuestion)
{
    return standardQuestion.isEmpty() ? asTyped(question) : standardQuestion;
}

QString noMatchText()
{
    return QARegion::tr("您好，未找到匹配的问题，请换一种说法试试看呢！");
}

/// Links in answers in the blue of the recommendations. Qt takes their colour from the
/// application's palette alone.
void colourLinks()
{
    QPalette palette = QApplication::palette();
    palette.setColor(QPalette::Link, QColor(41, 100, 245));
    QApplication::setPalette(palette);
}

QString noNetworkText()
{
    return QARegion::tr("您好，我是Miravel，由于网络连接失败，暂时无法提供智能服务。"
                        "您可在“热门问答”区域查看常见问题。");
}

} // namespace

QARegion::QARegion(QWidget *parent)
    : QWidget(parent)
    , m_copier(new ConversationCopier(m_pictures, this))
{
    if (objectName().isEmpty()) {
        setObjectName(QStringLiteral("QARegion"));
    }
    colourLinks();
    installReaderInterfaces();
    buildForm();
    m_cycle = new QuestionCycle(this);
    connectPieces();
}

QARegion::~QARegion() = default;

void QARegion::buildForm()
{
    resize(formSize);
    setWindowTitle(tr("Form"));
    auto *layout = new QGridLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    auto *inner = new QWidget(this);
    inner->setFixedSize(innerSize);
    inner->setStyleSheet(QStringLiteral("QWidget{background-color:white;border:none;}"));
    // All of the shadow lies outside this widget, where nothing of it is seen: painting the
    // conversation through the effect would only cost time and paint over what lies on top of it.
    addSurfaceShadow(inner)->hide();
    layout->addWidget(inner);
    m_list = new ConversationList(inner);
    m_list->setGeometry(listPlace);
    m_waitingDots = new WaitingDots(listPlace.bottom() + 1, inner);
    measureLabel = new QLabel(inner);
    measureLabel->setTextFormat(Qt::PlainText);
    measureLabel->setStyleSheet(QStringLiteral("QLabel{font:14px Microsoft YaHei;}"));
    measureLabel->hide();
}

void QARegion::connectPieces()
{
    connect(m_copier, &ConversationCopier::menuRequested, this, &QARegion::qaRightHitMenu_show);
    connect(m_copier, &ConversationCopier::copyRequested, this,
            &QARegion::qaRightHitMenu_copySlots);
    connect(m_cycle, &QuestionCycle::asking, m_waitingDots, &WaitingDots::begin);
    connect(m_cycle, &QuestionCycle::waitEnded, m_waitingDots, &WaitingDots::end);
    connect(m_cycle, &QuestionCycle::normalResult, this, &QARegion::QA_NORMAL_RESULT);
    connect(m_cycle, &QuestionCycle::multiResult, this, &QARegion::showMultiResult);
    connect(m_cycle, &QuestionCycle::noResult, this, &QARegion::showNoResult);
    connect(m_cycle, &QuestionCycle::notSent, this, [this] {
        addRobotMessage(noNetworkText());
        scrollToBottom();
    });
    connect(m_cycle, &QuestionCycle::replied, this, &QARegion::checkEmptyReply);
}

void QARegion::Miss_RecomSend(QString question, QString source, QString originalQuestion,
                              qint64 questionId)
{
    if (question.isEmpty()) {
        return;
    }
    addQuestionBubble(question);
    getAskAndAnswer_NoThread(question, source, originalQuestion, questionId);
}

void QARegion::getAskAndAnswer_NoThread(QString question, QString source, QString originalQuestion,
                                        qint64 questionId)
{
    m_cycle->ask(question, source, originalQuestion, questionId);
}

IdpInterface &QARegion::service()
{
    return m_cycle->service();
}

QJsonArray QARegion::suggestionsFor(const QString &text)
{
    return m_cycle->suggestionsFor(text);
}

void QARegion::checkEmptyReply(QString reply)
{
    if (reply.isEmpty()) {
        isGetResponse();
    }
}

void QARegion::QA_NORMAL_RESULT(QString question, QString standardQuestion, QString reply)
{
    LOG_INFO() << "Hit question, But no Recommend!";
    showAnswer(titleOf(question, standardQuestion), reply);
}

void QARegion::MULTI_QA_RESULT(QString question, QString standardQuestion, QString reply,
                               QJsonValue recommends)
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

void QARegion::NO_RESULT(int count, QJsonValue recommends, QString question)
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
    if (!m_cycle->isServiceFound()) {
        LOG_WARNING() << "Network problem! No reply.";
        addRobotMessage(noNetworkText());
        emit netproblem();
    } else {
        LOG_WARNING() << "The network is connected, but the reply is empty.";
        addRobotMessage(noMatchText());
    }
    scrollToBottom();
}

void QARegion::addQuestionBubble(QString text)
{
    auto *bubble = new QuestionBubble(text, m_list->nextParent());
    m_copier->addEntry(bubble, ConversationCopier::Question);
    m_list->append(bubble);
    scrollToBottom();
}

void QARegion::addRobotMessage(QString text)
{
    auto *bubble = new MessageBubble(text, m_list->nextParent());
    m_copier->addEntry(bubble, ConversationCopier::Message);
    m_list->append(bubble);
}

void QARegion::showAnswer(QString title, QString reply)
{
    AnswerItem *answer = addAnswer(title, reply);
    const int index = m_answers.size() - 1;
    connect(answer, &AnswerItem::foldRequested, this, [this, index](FoldState fold) {
        fold == FoldState::Opened ? FoldToOpen_answer(index) : OpenToFold_answer(index);
    });
    showAnswerItem(answer);
}

void QARegion::showAnswerWithRecommends(QString title, QString reply,
                                        const QVector<ListedQuestion> &recommends, QString question)
{
    AnswerItem *answer = addAnswer(title, reply);
    const int index = m_answers.size() - 1;
    const int box = m_answersWithBox.size();
    answer->setRecommends(recommends, measureLabel);
    m_answersWithBox.append(answer);
    connect(answer, &AnswerItem::foldRequested, this, [this, index, box](FoldState fold) {
        fold == FoldState::Opened ? FoldToOpen_AnswerRecom(index, box, index)
                                  : OpenToFold_AnswerRecom(index, box, index);
    });
    connect(answer, &AnswerItem::nextPageRequested, this,
            [this, box, question] { switchAnswerRecommends(box, question); });
    connect(answer, &AnswerItem::recommendClicked, this,
            [this, question](const QString &recommended, qint64 questionId) {
                askRecommended(recommended, question, questionId);
            });
    showAnswerItem(answer);
}

AnswerItem *QARegion::addAnswer(const QString &title, const QString &reply)
{
    auto *answer = new AnswerItem(title, m_list->nextParent());
    m_answers.append(answer);
    buildAnswerContent(reply, title, m_answers.size() - 1);
    return answer;
}

int QARegion::buildAnswerContent(QString reply, QString title, int answerIndex)
{
    AnswerItem *answer = m_answers.at(answerIndex);
    const int height = answer->setReply(reply, title, m_pictures);
    m_pictures.tellPreview();
    m_copier->addAnswer(answer);
    connect(answer, &AnswerItem::pictureClicked, this, &QARegion::picture_preview);
    return height;
}

void QARegion::save_gif(QString part, QString base64Data, QString fileName)
{
    saveAnimation(part, bytesOfBase64(QStringRef(&base64Data)), fileName);
}

void QARegion::setPicture(QString part, QString gifPath, int k)
{
    PictureRow *const row = m_pictures.at(k).row;
    if (row == nullptr) {
        return; // nothing of a sleeping answer is seen, and it wakes as it was
    }
    const QPixmap picture = m_pictures.decoded(k);
    const bool isAnimated = isAnimatedPicture(part);
    if (!picture.isNull() && !(isAnimated && row->play(gifPath, picture.size()))) {
        const QSize place = row->label()->size();
        const QSize size = isAnimated ? place : picture.size().scaled(place, Qt::KeepAspectRatio);
        row->showStill(
            QPixmap::fromImage(scaledForScreen(picture.toImage(), size, row->devicePixelRatioF())));
    }
}

void QARegion::fitPictureRow(QString part, int row, int k, int width)
{
    Q_UNUSED(row)
    if (m_pictures.at(k).row != nullptr && !isAnimatedPicture(part)) {
        m_pictures.at(k).row->fitToPicture(width);
    }
}

QString QARegion::wrapToWidth(QFontMetrics metrics, QString text, int width)
{
    return brokenToWidth(metrics, text, width);
}

void QARegion::showAnswerItem(AnswerItem *answer)
{
    answer->setFoldState(initialFoldState(answer->content()->contentHeight()));
    m_list->append(answer);
    scrollToBottom();
}

void QARegion::showRecommendOnly(const QVector<ListedQuestion> &recommends, QString question)
{
    auto *item = new RecommendOnlyItem(recommends, measureLabel, m_list->nextParent());
    const int box = m_boxes.size();
    m_boxes.append(item);
    connect(item, &RecommendOnlyItem::nextPageRequested, this,
            [this, box, question] { switchRecommendOnly(box, question); });
    connect(item, &RecommendOnlyItem::recommendClicked, this,
            [this, question](const QString &recommended, qint64 questionId) {
                askRecommended(recommended, question, questionId);
            });
    m_list->append(item);
    scrollToBottom();
}

void QARegion::askRecommended(const QString &recommended, const QString &question,
                              qint64 questionId)
{
    if (m_typingPlace != nullptr) {
        m_typingPlace->setFocus();
    }
    Miss_RecomSend(recommended, QStringLiteral("recommend"), question, questionId);
}

void QARegion::setTypingPlace(QWidget *place)
{
    m_typingPlace = place;
}

void QARegion::switchRecommendOnly(int box, QString question)
{
    Q_UNUSED(question)
    m_boxes.at(box)->showNextPage();
}

void QARegion::switchAnswerRecommends(int box, QString question)
{
    Q_UNUSED(question)
    m_answersWithBox.at(box)->showNextPage();
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

void QARegion::picture_preview(int k)
{
    const ImageDisplay *preview = m_pictures.openPreview(k);
    connect(preview, &ImageDisplay::previousImage_signal, this, &QARegion::changeToPreviousImg);
    connect(preview, &ImageDisplay::nextImage_signal, this, &QARegion::changeToNextImg);
}

void QARegion::changeToPreviousImg(int k)
{
    m_pictures.showInPreview(k);
}

void QARegion::changeToNextImg(int k)
{
    m_pictures.showNextInPreview(k);
}

void QARegion::qaRightHitMenu_show(int num, int type)
{
    m_copier->show(num, type);
}

void QARegion::qaRightHitMenu_copySlots(int num, int type)
{
    m_copier->copy(num, type);
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
