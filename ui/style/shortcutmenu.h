#pragma once

#include "ui/style/housemenu.h"

/// A menu whose rows are a text with its keyboard shortcut in grey behind it.
class ShortcutMenu : public HouseMenu
{
    Q_OBJECT
    Q_DISABLE_COPY(ShortcutMenu)

public:
    /// How a row looks. The margins belong to its size, in px.
    struct Row
    {
        QString text;
        QString shortcut; ///< shown, not acted upon
        QSize size;
        int topMargin = 0;
        int bottomMargin = 0;
        QRect shortcutPlace;
    };

    ShortcutMenu(const QSize &size, QWidget *parent);

    /// Appends \a row, greyed when not \a enabled. Its action is triggered by a click on it, or by
    /// the Return key.
    QAction *addRow(const Row &row, bool enabled);
};
