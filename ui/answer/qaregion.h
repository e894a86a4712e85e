#pragma once

#include "service/request/httpsrequest.h"
#include "service/request/idpinterface.h"
#include "ui/answer/picture/inlinepicture.h"

#include <QJsonArray>
#include <QPointer>
#include <QVector>
#include <QWidget>

#include <memory>

class AnswerItem;
class ConversationItem;
class ConversationList;
class CopyMenu;
class ImageDisplay;
class QLabel;
class RecommendBox;
struct Answer;
struct ListedQuestion;

/// The conversation area of the main window: shows questions, messages and answers as bubbles and
/// runs the question cycle with the service. Lives on the GUI thread.
class QARegion : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(QARegion)

public:
    /// What a copy menu belongs to, and the number by which its kind is known.
    enum MenuKind {
        ParagraphMenu = 0,
        PictureMenu = 1,
        QuestionMenu = 2,
        TitleMenu = 3,
        MessageMenu = 4,
    };

    explicit QARegion(QWidget *parent = nullptr);

    /// Takes the preview window along.
    ~QARegion() override;

    /// Asks the service one question and shows its answer. Returns when the answer has come or its
    /// time is over, at most 800 s; the window stays responsive while it waits.
    void getAskAndAnswer_NoThread(const QString &question, const QString &source,
                                  const QString &originalQuestion, qint64 questionId);

    /// The service that is asked. Its time limits may be changed between two calls.
    [[nodiscard]] IdpInterface &service() { return m_idp; }

    /// The service's suggestions for the typed \a text, empty on any failure. Waits for them for at
    /// most 0.4 s, in which the window stays responsive.
    [[nodiscard]] QJsonArray association_questions(const QString &text);

    /// Appends the user's question and scrolls to it.
    void addQuestionBubble(const QString &text);

    /// Appends a plain message of the assistant. Does not scroll.
    void addRobotMessage(const QString &text);

    /// Appends an answer without recommendations and scrolls to it.
    void showAnswer(const QString &title, const QString &reply);

    /// Appends an answer with a box of \a recommends, which are asked as following from
    /// \a question, and scrolls to it.
    void showAnswerWithRecommends(const QString &title, const QString &reply,
                                  const QVector<ListedQuestion> &recommends,
                                  const QString &question);

    /// Builds the rows of \a reply inside answer \a answerIndex and returns their height in px. The
    /// pictures in it join those of the conversation under \a title.
    int buildAnswerContent(const QString &reply, const QString &title, int answerIndex);

    /// Appends a box of \a recommends in place of an answer and scrolls to it.
    void showRecommendOnly(const QVector<ListedQuestion> &recommends, const QString &question);

    /// Shows the service's answer to a question that it has one for.
    void QA_NORMAL_RESULT(const QString &question, const QString &standardQuestion,
                          const QString &reply);

    /// Shows the service's answer and what it recommends beside it.
    void MULTI_QA_RESULT(const QString &question, const QString &standardQuestion,
                         const QString &reply, const QJsonValue &recommends);

    /// Shows the \a count recommendations for a question that the service has no answer to, or says
    /// that there are none.
    void NO_RESULT(int count, const QJsonValue &recommends, const QString &question);

    /// Says that no reply came: because of the network when no service address is known, which also
    /// emits netproblem(), or because the service has no answer.
    void isGetResponse();

    void scrollToBottom();

    /// Scrolls as far as needed to show \a widget, a control of the conversation.
    void reveal(const QWidget *widget);

    /// The open preview window; null when there is none.
    [[nodiscard]] ImageDisplay *preview() const;

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

    /// Shows the copy menu of text or picture number \a num of the MenuKind \a type at the mouse.
    void qaRightHitMenu_show(int num, int type);

    /// Copies that text's selection, or that picture, to the clipboard and closes the menu.
    void qaRightHitMenu_copySlots(int num, int type);

private:
    /// A text of the conversation: number \a number of an entry, which the list owns.
    struct ConversationText
    {
        const ConversationItem *item;
        int number;
    };

    void showResult(const QString &question, const Answer &answer);
    void showMultiResult(const QString &question, const Answer &answer);
    void showNoResult(int count, const QVector<ListedQuestion> &recommends,
                      const QString &question);
    AnswerItem *addAnswer(const QString &title, const QString &reply);
    void showAnswerItem(AnswerItem *answer);
    void addCopyMenu(ConversationItem *item, MenuKind kind);
    void addAnswerCopyMenus(AnswerItem *answer);
    void connectPictures(const AnswerItem &answer);
    [[nodiscard]] QString selectedText(int num, int type) const;
    void copyPicture(int num) const;
    void connectRows(RecommendBox *box, const QString &question);
    void switchRecommendOnly(int box);
    void switchAnswerRecommends(int box);
    void checkEmptyReply(const QString &reply);

    IdpInterface m_idp;
    httpsRequest m_endpoint;
    ConversationList *m_list = nullptr;
    QLabel *m_measureLabel = nullptr; ///< hidden; recommendations are measured in it
    QString m_userName;
    QVector<ConversationPicture> m_pictures;            ///< of all answers, in the order shown
    QVector<ConversationText> m_texts[MessageMenu + 1]; ///< of each MenuKind
    QPointer<CopyMenu> m_rightHitMenu;
    std::unique_ptr<ImageDisplay> imagePreview;
    // In the order shown; owned by the list.
    QVector<AnswerItem *> m_answers;
    QVector<RecommendBox *> m_answerBoxes; ///< below answers
    QVector<RecommendBox *> m_boxes;       ///< in place of answers
};
