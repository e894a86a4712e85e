#include "ui/mainwindow/input/inputmenu.h"

#include <QApplication>
#include <QClipboard>
#include <QTextCursor>
#include <QTextEdit>

namespace {

constexpr QSize menuSize(137, 93);
constexpr QSize outerRowSize(135, 33);
constexpr QSize middleRowSize(135, 27);
constexpr int outerMargin = 6;
constexpr QRect topShortcut(88, outerMargin, 38, 27);
constexpr QRect otherShortcut(88, 0, 38, 27);

} // namespace

InputMenu::InputMenu(const QTextEdit &input, QWidget *parent)
    : ShortcutMenu(menuSize, parent)
{
    const bool selected = input.textCursor().hasSelection();
    const bool pastable = !QApplication::clipboard()->text().isEmpty();
    const QAction *cut
        = addRow({tr("剪切"), tr("Ctrl+X"), outerRowSize, outerMargin, 0, topShortcut}, selected);
    const QAction *copy
        = addRow({tr("复制"), tr("Ctrl+C"), middleRowSize, 0, 0, otherShortcut}, selected);
    const QAction *paste
        = addRow({tr("粘贴"), tr("Ctrl+V"), outerRowSize, 0, outerMargin, otherShortcut}, pastable);
    connect(cut, &QAction::triggered, this, &InputMenu::cutRequested);
    connect(copy, &QAction::triggered, this, &InputMenu::copyRequested);
    connect(paste, &QAction::triggered, this, &InputMenu::pasteRequested);
}
