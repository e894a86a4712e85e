#pragma once

#include "ui/style/shortcutmenu.h"

/// The menu of a text or picture of the conversation, with the one item that copies it. Deletes
/// itself when it closes.
class CopyMenu : public ShortcutMenu
{
    Q_OBJECT
    Q_DISABLE_COPY(CopyMenu)

public:
    /// With \a enabled false the item is greyed: there is nothing to copy.
    CopyMenu(bool enabled, QWidget *parent);

signals:
    void copyRequested();
};
