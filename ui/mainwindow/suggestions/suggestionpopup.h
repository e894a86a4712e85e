#pragma once

#include <QVector>
#include <QWidget>

class QPushButton;
class QuestionList;
class SuggestionHighlight;
struct ListedQuestion;

/// The suggestions for what is typed, above the input box: a row for each and a button that closes
/// them. Made anew for every reply of the service and never shown twice.
class SuggestionPopup : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(SuggestionPopup)

public:
    /// More suggestions than these are not shown.
    static constexpr int capacity = 21;

    /// Shows \a suggestions, at least one, inside \a parent at their place. What matches \a typed
    /// is highlighted.
    SuggestionPopup(const QVector<ListedQuestion> &suggestions, const QString &typed,
                    QWidget *parent);

    /// Gives the first suggestion the focus. Up and Down move it from there, Return asks.
    void focusFirstRow();

    bool eventFilter(QObject *watched, QEvent *event) override;

signals:
    void suggestionClicked(const QString &question, qint64 id);
    void closeClicked();

private:
    void addCloseButton();
    void addRow(const ListedQuestion &suggestion, SuggestionHighlight &highlight);

    [[nodiscard]] bool takeKey(QPushButton *button, int key);

    QuestionList *m_list;
    QVector<QPushButton *> m_buttons; ///< of the rows, which own them
};
