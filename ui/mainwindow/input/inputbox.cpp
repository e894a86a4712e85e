#include "ui/mainwindow/input/inputbox.h"

#include "app/base/logstream.h"
#include "ui/mainwindow/input/heldtext.h"

#include <QMimeData>
#include <QTextCursor>

#include <memory>

InputBox::InputBox(QWidget *parent)
    : QTextEdit(parent)
{
    // Once and for all: the box keeps its document.
    static_cast<void>(new HeldText(document()));
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

void InputBox::insertFromMimeData(const QMimeData *source)
{
    const QString text = source->text();
    QTextCursor cursor = textCursor();
    const int selected = cursor.selectionEnd() - cursor.selectionStart();
    const int room = qMax(0, mostShown - (document()->characterCount() - selected));
    if (text.size() <= room) {
        QTextEdit::insertFromMimeData(source);
        return;
    }
    LOG_INFO() << "pasted text is shown in part, characters: " << text.size();
    const bool splitsPair = room > 0 && text.at(room - 1).isHighSurrogate();
    const int shown = splitsPair ? room - 1 : room;
    cursor.beginEditBlock();
    cursor.insertText(text.left(shown));
    HeldText::insert(cursor, text.mid(shown));
    cursor.endEditBlock();
    setTextCursor(cursor);
    ensureCursorVisible();
}
