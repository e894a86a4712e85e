#pragma once

#include <QListWidget>
#include <QVector>

class QLabel;
struct ListedQuestion;

/// One page of a recommendation box: five rows, each a question that a click asks. Rows beyond the
/// last recommendation are there too, without text.
class RecommendPage : public QListWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(RecommendPage)

public:
    /// When a text is cut with an ellipsis. The three kinds of page have always differed in it.
    enum class Elision {
        FirstOfBox,    ///< wider than 380 px, to 380 px, without a tool tip
        FirstOfAnswer, ///< wider than 375 px in the measuring label, to 376 px, without a tool tip
        Later,         ///< as the first of an answer, with the full text as tool tip
    };

    /// The page that starts at \a start of \a recommends. \a measure is a label in the rows' font
    /// that texts are measured in.
    RecommendPage(const QVector<ListedQuestion> &recommends, int start, Elision elision,
                  QLabel *measure, QWidget *parent);

    /// The buttons of the rows that have a question.
    [[nodiscard]] const QVector<QWidget *> &questions() const { return m_questions; }

signals:
    /// The row of \a question was clicked.
    void recommendClicked(const QString &question, qint64 questionId);

private:
    void addRow(const ListedQuestion &recommend, Elision elision, QLabel *measure);

    QVector<QWidget *> m_questions;
};
