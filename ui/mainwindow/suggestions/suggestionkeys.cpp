#include "ui/mainwindow/suggestions/suggestionkeys.h"

#include "ui/mainwindow/suggestions/suggestionpopup.h"
#include "ui/mainwindow/suggestions/suggestions.h"

#include <QKeyEvent>
#include <QTextBlock>
#include <QTextEdit>
#include <QTextLayout>

namespace {

bool isPlainDown(const QEvent *event)
{
    if (event->type() != QEvent::KeyPress) {
        return false;
    }
    const auto *key = static_cast<const QKeyEvent *>(event);
    return key->key() == Qt::Key_Down && (key->modifiers() & ~Qt::KeypadModifier) == 0;
}

} // namespace

SuggestionKeys::SuggestionKeys(QTextEdit *input, Suggestions *suggestions)
    : QObject(input)
    , m_input(input)
    , m_suggestions(suggestions)
{
    input->installEventFilter(this);
}

bool SuggestionKeys::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_input && isPlainDown(event) && m_suggestions != nullptr && isOnLastLine()) {
        if (auto *popup = qobject_cast<SuggestionPopup *>(m_suggestions->popup())) {
            popup->focusFirstRow();
            return true;
        }
    }
    return QObject::eventFilter(watched, event);
}

bool SuggestionKeys::isOnLastLine() const
{
    const QTextCursor cursor = m_input->textCursor();
    const QTextBlock block = cursor.block();
    const QTextLine line = block.layout()->lineForTextPosition(cursor.positionInBlock());
    return !block.next().isValid() && block.layout()->preeditAreaText().isEmpty()
        && (!line.isValid() || line.lineNumber() == block.layout()->lineCount() - 1);
}
