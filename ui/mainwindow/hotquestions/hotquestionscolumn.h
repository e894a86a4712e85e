#pragma once

#include "service/reply/listedquestion.h"

#include <QStringList>
#include <QVector>
#include <QWidget>

class QPushButton;
class QuestionList;

/// The column of popular questions at the right of the window: a heading, sixteen rows, and a
/// button for the next page.
class HotQuestionsColumn : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(HotQuestionsColumn)

public:
    explicit HotQuestionsColumn(QWidget *parent);

    /// Shows the first page of the service's \a questions. A page always has sixteen rows; those
    /// beyond the last question have none.
    void showServiceQuestions(const QVector<ListedQuestion> &questions);

    /// Shows the first page of the local library's \a entries, the first of which is no question.
    /// On the last page the row after the last question is left empty. As with every new page, a
    /// row with the focus hands it to the one in its place, or to the button when that is empty.
    void showLocalQuestions(const QStringList &entries);

    /// Shows the next page of the local questions; after the last the first comes again. The button
    /// asks for it by nextLocalPageWanted(), while it turns the service's pages itself.
    void showNextLocalPage();

signals:
    void questionClicked(const QString &question, qint64 questionId);

    /// The button for the next page was clicked while local questions are shown.
    void nextLocalPageWanted();

private:
    void turnPage();
    void showNextServicePage();
    void showPage();
    [[nodiscard]] int focusedRow() const;
    void focusRow(int row);
    void fillServicePage();
    void fillLocalPage();
    QWidget *addRow(const QString &accessibleName);
    void fillRow(QWidget *row, int number, const ListedQuestion &question);

    QuestionList *m_list;
    QPushButton *m_nextPage;
    bool m_showsLocal = false; ///< which of the two lists is paged through
    QVector<ListedQuestion> m_questions;
    QStringList m_entries;
    int hotPage = 0;     ///< where the shown page of the service's questions begins
    int m_localPage = 0; ///< the same for the local ones
};

/// The button "换一换" of the column, at its place inside \a parent.
[[nodiscard]] QPushButton *makeNextPageButton(QWidget *parent);
