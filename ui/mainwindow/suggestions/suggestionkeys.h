#pragma once

#include <QObject>
#include <QPointer>

class QTextEdit;
class Suggestions;

/// Lets the Down key lead from the last line of the input box into the open suggestions.
class SuggestionKeys : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(SuggestionKeys)

public:
    /// Belongs to \a input. \a suggestions may go first.
    SuggestionKeys(QTextEdit *input, Suggestions *suggestions);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    [[nodiscard]] bool isOnLastLine() const;

    QTextEdit *m_input;
    QPointer<Suggestions> m_suggestions;
};
