#pragma once

#include "ui/answer/bubble/answergeometry.h"
#include "ui/answer/content/answercontent.h"
#include "ui/answer/list/conversationitem.h"
#include "ui/answer/recommend/recommendbox.h"

#include <QVector>

class ConversationPictures;
class FoldBar;

/// An answer: its bold title, a line, the rows of the reply, and, when they are tall, the bars that
/// fold and unfold them.
class AnswerItem : public ConversationItem
{
    Q_OBJECT
    Q_DISABLE_COPY(AnswerItem)

public:
    /// The frame with the \a title, a text of the service, that reply and recommendations go into.
    AnswerItem(const QString &title, QWidget *parent);

    /// Builds the rows of \a reply, rich text of the service, and returns their height in px. The
    /// pictures in it are appended to \a pictures, those of the whole conversation, under \a title.
    /// \a pictures must live as long as the entry.
    int setReply(const QString &reply, const QString &title, ConversationPictures &pictures);

    /// Adds a box of \a recommends below the answer. \a measure is the label that their texts are
    /// measured in.
    void setRecommends(const QVector<ListedQuestion> &recommends, QLabel *measure);

    /// The title; null while the entry sleeps.
    [[nodiscard]] QLabel *titleLabel() const { return m_title; }

    /// The rows of the reply; null before setReply() and while the entry sleeps.
    [[nodiscard]] AnswerContent *content() const { return m_content; }

    /// The recommendations; null for an answer without, and while the entry sleeps.
    [[nodiscard]] RecommendBox *box() const { return m_box; }

    /// Wakes the entry and shows the next page of its recommendations.
    void showNextPage();

    /// Number 0 is the title, the paragraphs follow.
    [[nodiscard]] QLabel *text(int number) const override;

    /// Wakes the entry, places everything, after setReply(), and shows the answer as \a fold says.
    void setFoldState(FoldState fold);

signals:
    /// Picture \a number of the conversation, which is in this answer, was clicked, or its copy
    /// menu is wanted.
    void pictureClicked(int number);
    void pictureMenuRequested(int number);

    /// The user wants to see a folded answer whole (FoldState::Opened), or an opened one folded
    /// again.
    void foldRequested(FoldState fold);

    void recommendClicked(const QString &question, qint64 questionId);
    void nextPageRequested();

protected:
    [[nodiscard]] bool canSleep() const override;
    void forget() override;
    void rebuild() override;

    /// Title, paragraphs and pictures, the bar that is shown, the recommendations.
    [[nodiscard]] int readCount() const override;
    [[nodiscard]] QWidget *readPart(int number) const override;

private:
    void makeFrame();
    void makeBox();
    void connectContent();
    void contentChanged();
    [[nodiscard]] QVector<QWidget *> partsBelowContent() const;
    void makeBars();
    void placeBars(const AnswerGeometry &places);

    QString m_titleText;
    ConversationPictures *m_pictures = nullptr;
    QVector<ContentRow> m_rows; ///< kept for an entry that may sleep
    FoldState m_fold = FoldState::Unfolded;
    QWidget *m_bubble = nullptr; ///< null, as all that is in it, while the entry sleeps
    QLabel *m_title = nullptr;
    QLabel *m_separator = nullptr;
    AnswerContent *m_content = nullptr;
    FoldBar *m_openBar = nullptr; ///< this and the next only once the answer is folded
    FoldBar *m_retractBar = nullptr;
    QVector<ListedQuestion> m_recommends;
    QLabel *m_measure = nullptr; ///< null for an answer without recommendations
    RecommendBox::Place m_place; ///< of the box while the entry sleeps
    RecommendBox *m_box = nullptr;
    int m_titleTerm = 0; ///< px that the title takes in the places of all that lies below it
};
