#pragma once

#include "ui/style/shortcutmenu.h"

class QTextEdit;

/// The context menu of the input box: cut, copy, paste, as far as there is something to cut, copy
/// or paste. Deletes itself when it closes.
class InputMenu : public ShortcutMenu
{
    Q_OBJECT
    Q_DISABLE_COPY(InputMenu)

public:
    /// For what is selected in \a input, and on the clipboard, now.
    InputMenu(const QTextEdit &input, QWidget *parent);

signals:
    void cutRequested();
    void copyRequested();
    void pasteRequested();
};
