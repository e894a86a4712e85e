#pragma once

#include <QObject>
#include <QPointer>

class QARegion;
class QJsonArray;
class QTextEdit;
class SuggestionPopup;

/// Knows when suggestions for the typed text are due, fetches and shows them. One popup at a time.
/// GUI thread.
class Suggestions : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(Suggestions)

public:
    /// For what is typed in \a input, from the service behind \a region, shown inside \a place. All
    /// three outlive this.
    Suggestions(QTextEdit *input, QARegion *region, QWidget *place);

    /// Looks at the typed text, once a second: closes the popup when it has gone, and returns
    /// whether it is another than the last time.
    [[nodiscard]] bool textHasChanged();

    /// Fetches suggestions and shows them in place of those before, if the text that they are for
    /// is still typed then. Takes at most 0.4 s, in which the window stays responsive, and as much
    /// longer as a question takes that is asked meanwhile.
    void fetch();

    /// Closes the popup.
    void close();

    /// Closes it because one of its suggestions is asked.
    void closeForQuestion();

    /// Closes the popup and shows none any more, not even one that is being fetched.
    void stop();

    /// The open popup; null when there is none.
    [[nodiscard]] QWidget *popup() const;

signals:
    void questionClicked(const QString &question, qint64 id);
    void closeClicked();

private:
    void questionAsked();
    void show(const QJsonArray &suggestions, const QString &text);

    QTextEdit *m_input;
    QARegion *m_region;
    QWidget *m_place;
    QPointer<SuggestionPopup> m_popup;
    QString m_shownText; ///< what the popup was fetched for
    int m_fetches = 0;   ///< under way, inside each other
    bool m_isStopped = false;
    QString lastInputText;
    int nSize_association = 0; ///< popups made since a suggestion was asked; 0: none is open
};
