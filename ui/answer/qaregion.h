#pragma once

#include "ui/answer/picture/conversationpictures.h"

#include <QJsonArray>
#include <QJsonValue>
#include <QPointer>
#include <QVector>
#include <QWidget>

class AnswerItem;
class ConversationCopier;
class ConversationList;
class IdpInterface;
class QFontMetrics;
class QLabel;
class QuestionCycle;
class RecommendOnlyItem;
class WaitingDots;
struct Answer;
struct ListedQuestion;

/// The conversation area of the main window: shows questions, messages and answers as bubbles and
/// has its questions asked. It conducts: the list, the pictures, the copier and the question cycle
/// do the work. Lives on the GUI thread.
class QARegion : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(QARegion)

public:
    explicit QARegion(QWidget *parent = nullptr);

    /// Takes the preview window along.
    ~QARegion() override;

    /// Asks the service one question and shows its answer. Returns when the answer has come or its
    /// time is over, at most 800 s; the window stays responsive while it waits.
    void getAskAndAnswer_NoThread(QString question, QString source, QString originalQuestion,
                                  qint64 questionId);

    /// The service that is asked. Its time limits may be changed between two calls.
    [[nodiscard]] IdpInterface &service();

    /// The service's suggestions for the typed \a text, empty on any failure. Waits for them for at
    /// most 0.4 s, in which the window stays responsive.
    [[nodiscard]] QJsonArray suggestionsFor(const QString &text);

    /// Appends the user's question and scrolls to it.
    void addQuestionBubble(QString text);

    /// Appends a plain message of the assistant. Does not scroll.
    void addRobotMessage(QString text);

    /// Appends an answer without recommendations and scrolls to it.
    void showAnswer(QString title, QString reply);

    /// Appends an answer with a box of \a recommends, which are asked as following from
    /// \a question, and scrolls to it.
    void showAnswerWithRecommends(QString title, QString reply,
                                  const QVector<ListedQuestion> &recommends, QString question);

    /// Builds the rows of \a reply inside answer \a answerIndex and returns their height in px. The
    /// pictures in it join those of the conversation under \a title.
    int buildAnswerContent(QString reply, QString title, int answerIndex);

    /// Writes the picture \a base64Data to \a fileName when the image tag \a part holds an
    /// animation. A file that cannot be written gives a warning in the log.
    static void save_gif(QString part, QString base64Data, QString fileName);

    /// Shows picture \a k, of the image tag \a part, in its row: scaled down to the row when it is
    /// a still one, else the animation in the file \a gifPath.
    void setPicture(QString part, QString gifPath, int k);

    /// Makes the row of picture \a k, of the image tag \a part, as low as the picture in it when it
    /// is a still one, with a picture \a width px wide. The picture knows its \a row.
    void fitPictureRow(QString part, int row, int k, int width);

    /// Breaks \a text into lines of less than \a width px, as question bubbles show it.
    [[nodiscard]] static QString wrapToWidth(QFontMetrics metrics, QString text, int width);

    /// Appends a box of \a recommends in place of an answer and scrolls to it.
    void showRecommendOnly(const QVector<ListedQuestion> &recommends, QString question);

    /// Shows the next page of the box \a box of those in place of answers. What it recommends is
    /// asked as following from the question of the box, which \a question tells again.
    void switchRecommendOnly(int box, QString question);

    /// The same for the box \a box of those below answers.
    void switchAnswerRecommends(int box, QString question);

    /// Shows the service's answer to a question that it has one for.
    void QA_NORMAL_RESULT(QString question, QString standardQuestion, QString reply);

    /// Shows the service's answer and what it recommends beside it.
    void MULTI_QA_RESULT(QString question, QString standardQuestion, QString reply,
                         QJsonValue recommends);

    /// Shows the \a count recommendations for a question that the service has no answer to, or says
    /// that there are none.
    void NO_RESULT(int count, QJsonValue recommends, QString question);

    /// Says that no reply came: because of the network when no service address is known, which also
    /// emits netproblem(), or because the service has no answer.
    void isGetResponse();

    /// Runs isGetResponse() when the round trip ended without a \a reply.
    void checkEmptyReply(QString reply);

    void scrollToBottom();

    /// Where the focus goes from a recommendation that is asked, so that the next key is typed.
    /// Not owned.
    void setTypingPlace(QWidget *place);

    /// Scrolls as far as needed to show \a widget, a control of the conversation.
    void reveal(const QWidget *widget);

    /// The round trips of all questions, whichever way they are asked.
    [[nodiscard]] const QuestionCycle &cycle() const { return *m_cycle; }

    /// The open preview window; null when there is none.
    [[nodiscard]] ImageDisplay *preview() const { return m_pictures.preview(); }

signals:
    void beginGetAskAndAnswer(QString question);

    /// The service turned out to be unreachable.
    void netproblem();

public slots:
    void FoldToOpen_AnswerRecom(int answer, int box, int line);
    void OpenToFold_AnswerRecom(int answer, int box, int line);
    void FoldToOpen_answer(int answer);
    void OpenToFold_answer(int answer);

    /// Shows \a question as the user's bubble and asks it; nothing happens for an empty one.
    /// \a source says where it came from: "rawquery", "hotquestion", "associate" or "recommend".
    void Miss_RecomSend(QString question, QString source, QString originalQuestion,
                        qint64 questionId);

    /// Opens the preview on picture \a k, in place of one that is open.
    void picture_preview(int k);

    /// Hands picture \a k to the preview, which never asks for one below 0.
    void changeToPreviousImg(int k);

    /// Hands picture \a k to the preview; past the last picture it stays where it is.
    void changeToNextImg(int k);

    /// Shows the copy menu of text or picture \a num of the kind \a type, one of
    /// ConversationCopier::MenuKind, at the mouse.
    void qaRightHitMenu_show(int num, int type);

    /// Copies that text's selection, or that picture, to the clipboard and closes the menu.
    void qaRightHitMenu_copySlots(int num, int type);

private:
    void buildForm();
    void connectPieces();
    void showMultiResult(const QString &question, const Answer &answer);
    void showNoResult(int count, const QVector<ListedQuestion> &recommends,
                      const QString &question);
    AnswerItem *addAnswer(const QString &title, const QString &reply);
    void showAnswerItem(AnswerItem *answer);
    void askRecommended(const QString &recommended, const QString &question, qint64 questionId);

    ConversationList *m_list = nullptr;
    WaitingDots *m_waitingDots = nullptr;
    QLabel *measureLabel = nullptr; ///< hidden; recommendations are measured in it
    ConversationPictures m_pictures;
    ConversationCopier *m_copier = nullptr;
    QuestionCycle *m_cycle = nullptr;
    QPointer<QWidget> m_typingPlace;
    // In the order shown; owned by the list.
    QVector<AnswerItem *> m_answers;
    QVector<AnswerItem *> m_answersWithBox;
    QVector<RecommendOnlyItem *> m_boxes; ///< in place of answers
};
