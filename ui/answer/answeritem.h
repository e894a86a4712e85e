#pragma once

#include "ui/answer/answergeometry.h"
#include "ui/answer/conversationitem.h"
#include "ui/answer/inlinepicture.h"

#include <QVector>

class AnswerContent;
class FoldBar;
class QJsonArray;
class RecommendBox;

/// An answer: its bold title, a line, the rows of the reply, and, when they are tall, the bars that
/// fold and unfold them.
class AnswerItem : public ConversationItem
{
    Q_OBJECT
    Q_DISABLE_COPY(AnswerItem)

public:
    /// \a title and \a reply are rich text of the service. Pictures in the reply are appended to
    /// \a pictures, those of the whole conversation.
    AnswerItem(const QString &title, const QString &reply, QVector<ConversationPicture> &pictures,
               ConversationList *list);

    /// The same with a box of \a recommends below the answer. \a measure is the label that their
    /// texts are measured in.
    AnswerItem(const QString &title, const QString &reply, QVector<ConversationPicture> &pictures,
               const QJsonArray &recommends, QLabel *measure, ConversationList *list);

    [[nodiscard]] QLabel *titleLabel() const { return m_title; }
    [[nodiscard]] AnswerContent *content() const { return m_content; }

    /// The recommendations; null for an answer without.
    [[nodiscard]] RecommendBox *box() const { return m_box; }

    /// Shows the answer as \a fold says.
    void setFoldState(FoldState fold);

signals:
    /// The user wants to see a folded answer whole.
    void openRequested();
    /// The user wants an opened answer folded again.
    void retractRequested();

private:
    /// Marks the constructor of what both kinds of answer have.
    struct FrameOnly
    {
    };
    AnswerItem(FrameOnly frame, const QString &title, const QString &reply,
               QVector<ConversationPicture> &pictures, ConversationList *list);

    void makeBars();

    QWidget *m_bubble;
    QLabel *m_title;
    QLabel *m_separator;
    AnswerContent *m_content;
    FoldBar *m_openBar = nullptr; ///< this and the next only once the answer is folded
    FoldBar *m_retractBar = nullptr;
    RecommendBox *m_box = nullptr;
    int m_titleTerm; ///< px that the title takes in the places of all that lies below it
};
