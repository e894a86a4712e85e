#include "ui/mainwindow/suggestions/suggestions.h"

#include "app/base/logstream.h"
#include "service/reply/listedquestion.h"
#include "ui/answer/qaregion.h"
#include "ui/mainwindow/suggestions/suggestionpopup.h"

#include <QJsonArray>
#include <QTextDocument>
#include <QTextEdit>

Suggestions::Suggestions(QTextEdit *input, QARegion *region, QWidget *place)
    : m_input(input)
    , m_region(region)
    , m_place(place)
{
}

bool Suggestions::textHasChanged()
{
    const QString text = m_input->toPlainText();
    if (nSize_association > 0 && text.isEmpty()) {
        close();
    }
    const bool changed = text != lastInputText;
    lastInputText = text;
    return changed && !text.isEmpty();
}

void Suggestions::fetch()
{
    const QString text = m_input->toPlainText();
    const QJsonArray suggestions = m_region->suggestionsFor(text);
    LOG_INFO() << "nSize_association: " << suggestions.size();
    close();
    if (suggestions.isEmpty() || m_input->document()->isEmpty()) {
        return; // nothing to show, or what was typed has been sent meanwhile
    }
    m_popup = new SuggestionPopup(readListedQuestions(suggestions), text, m_place);
    connect(m_popup, &SuggestionPopup::suggestionClicked, this, &Suggestions::questionClicked);
    connect(m_popup, &SuggestionPopup::closeClicked, this, &Suggestions::closeClicked);
    ++nSize_association;
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

QWidget *Suggestions::popup() const
{
    return m_popup;
}
