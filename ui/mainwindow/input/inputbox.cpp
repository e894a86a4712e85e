#include "ui/mainwindow/input/inputbox.h"

#include "app/base/logstream.h"
#include "ui/mainwindow/input/heldtext.h"

#include <QInputMethodEvent>
#include <QMimeData>
#include <QScopedValueRollback>
#include <QTextCursor>

#include <memory>

namespace {

/// Typing goes on being shown beyond the bound: only as much at once is held.
constexpr int leastHeld = 100;

} // namespace

InputBox::InputBox(QWidget *parent)
    : QTextEdit(parent)
{
    // Once and for all: the box keeps its document.
    static_cast<void>(new HeldText(document()));
    connect(document(), &QTextDocument::contentsChange, this, &InputBox::holdExcess);
}

QMimeData *InputBox::createMimeDataFromSelection() const
{
    const QTextCursor cursor = textCursor();
    if (!cursor.selectedText().contains(QChar::ObjectReplacementCharacter)) {
        return QTextEdit::createMimeDataFromSelection();
    }
    auto copied = std::make_unique<QMimeData>();
    copied->setText(wholeText(*document(), cursor.selectionStart(), cursor.selectionEnd()));
    return copied.release(); // owned by the clipboard then
}

/// The characters that may still be shown in place of what is selected.
int InputBox::room() const
{
    const QTextCursor cursor = textCursor();
    const int selected = cursor.selectionEnd() - cursor.selectionStart();
    return qMax(0, mostShown - (document()->characterCount() - selected));
}

void InputBox::insertFromMimeData(const QMimeData *source)
{
    const QString text = source->text();
    if (text.size() <= room()) {
        QTextEdit::insertFromMimeData(source);
    } else {
        insertLong(text);
    }
}

void InputBox::inputMethodEvent(QInputMethodEvent *event)
{
    const QString text = event->commitString();
    if (text.size() < leastHeld || text.size() <= room()) {
        QTextEdit::inputMethodEvent(event);
        return;
    }
    QInputMethodEvent rest(event->preeditString(), event->attributes());
    QTextEdit::inputMethodEvent(&rest);
    insertLong(text);
}

void InputBox::insertLong(const QString &text)
{
    LOG_INFO() << "pasted text is shown in part, characters: " << text.size();
    QTextCursor cursor = textCursor();
    const int most = room();
    const bool splitsPair = most > 0 && text.at(most - 1).isHighSurrogate();
    const int shown = splitsPair ? most - 1 : most;
    cursor.beginEditBlock();
    cursor.insertText(text.left(shown));
    HeldText::insert(cursor, text.mid(shown));
    cursor.endEditBlock();
    setTextCursor(cursor);
    ensureCursorVisible();
}

/// Holds what is too much of a text that came in another way, before Qt lays it out.
void InputBox::holdExcess(int position, int removed, int added)
{
    Q_UNUSED(removed)
    const int excess = qMin(added, document()->characterCount() - 1 - mostShown);
    if (m_holding || excess < leastHeld) {
        return;
    }
    const QScopedValueRollback<bool> holding(m_holding, true);
    const int end = qMin(position + added, document()->characterCount() - 1);
    QTextCursor cursor(document());
    cursor.setPosition(end - excess);
    if (document()->characterAt(end - excess).isLowSurrogate()) {
        cursor.movePosition(QTextCursor::PreviousCharacter);
    }
    const QString text = wholeText(*document(), cursor.position(), end);
    LOG_INFO() << "inserted text is shown in part, characters: " << added;
    cursor.setPosition(end, QTextCursor::KeepAnchor);
    HeldText::insert(cursor, text);
}
