#include "ui/mainwindow/suggestions/suggestions.h"

#include "app/base/logstream.h"
#include "service/reply/listedquestion.h"
#include "ui/answer/qaregion.h"
#include "ui/answer/questioncycle.h"
#include "ui/mainwindow/input/heldtext.h"
#include "ui/mainwindow/suggestions/suggestionpopup.h"

#include <QJsonArray>
#include <QTextEdit>

Suggestions::Suggestions(QTextEdit *input, QARegion *region, QWidget *place)
    : m_input(input)
    , m_region(region)
    , m_place(place)
{
    connect(&region->cycle(), &QuestionCycle::asking, this, &Suggestions::questionAsked);
}

bool Suggestions::textHasChanged()
{
    const QString text = wholeText(*m_input->document());
    if (nSize_association > 0 && text.isEmpty()) {
        close();
    }
    const bool changed = text != lastInputText;
    lastInputText = text;
    return changed && !text.isEmpty();
}

void Suggestions::fetch()
{
    if (m_isStopped) {
        return;
    }
    const QString text = wholeText(*m_input->document());
    ++m_fetches;
    const QJsonArray suggestions = m_region->suggestionsFor(text);
    --m_fetches;
    LOG_INFO() << "nSize_association: " << suggestions.size();
    // Meanwhile the user may have typed on or sent the text, and a later fetch may have ended.
    const QString typedNow = wholeText(*m_input->document());
    if (text == typedNow || m_shownText != typedNow) {
        close();
    }
    if (text == typedNow && !suggestions.isEmpty() && !m_isStopped) {
        show(suggestions, text);
    }
}

void Suggestions::show(const QJsonArray &suggestions, const QString &text)
{
    m_popup = new SuggestionPopup(readListedQuestions(suggestions), text, m_place);
    connect(m_popup, &SuggestionPopup::suggestionClicked, this, &Suggestions::questionClicked);
    connect(m_popup, &SuggestionPopup::closeClicked, this, &Suggestions::closeClicked);
    m_shownText = text;
    ++nSize_association;
}

void Suggestions::questionAsked()
{
    if (m_fetches > 0) {
        close(); // nothing renews or closes it until the fetch ends, which is after the answer
    }
}

void Suggestions::close()
{
    if (m_popup.isNull()) {
        return;
    }
    if (m_popup->isAncestorOf(m_input->window()->focusWidget())) {
        m_input->setFocus(); // the user types on
    }
    m_popup->close();
    m_popup->deleteLater(); // a click on one of its buttons may be under way
    m_popup.clear();
}

void Suggestions::closeForQuestion()
{
    nSize_association = 0;
    close();
}

void Suggestions::stop()
{
    m_isStopped = true;
    close();
}

QWidget *Suggestions::popup() const
{
    return m_popup;
}
