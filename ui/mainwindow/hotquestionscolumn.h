#pragma once

#include "ui/mainwindow/suggestedquestion.h"

#include <QVector>
#include <QWidget>

class QJsonArray;
class QListWidget;
class QPushButton;

/// The column of popular questions at the right of the window: a heading, sixteen rows, and a
/// button for the next page.
class HotQuestionsColumn : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(HotQuestionsColumn)

public:
    explicit HotQuestionsColumn(QWidget *parent);

    /// Shows the page of the service's \a questions that begins at \a start: always sixteen rows,
    /// those beyond the last question without one.
    void showServicePage(const QJsonArray &questions, int start);

    /// Shows the page of the local library's \a entries that begins at \a start. The first entry is
    /// no question. The row after the last question is left empty.
    void showLocalPage(const QStringList &entries, int start);

    /// Shows or hides the button for the next page.
    void setNextPageVisible(bool visible);

signals:
    void questionClicked(const QString &question, qint64 questionId);
    void nextPageRequested();

private:
    [[nodiscard]] QWidget *addRow();
    void fillRow(QWidget *row, int number, const SuggestedQuestion &question);

    QListWidget *m_list;
    QPushButton *m_nextPage;
};

/// The button "换一换" of the column, at its place inside \a parent.
[[nodiscard]] QPushButton *makeNextPageButton(QWidget *parent);
