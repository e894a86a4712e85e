#pragma once

#include "ui/style/housemenu.h"

/// The menu of the about button: help and feedback, and the About dialog. Deletes itself when it
/// closes.
class AboutMenu : public HouseMenu
{
    Q_OBJECT
    Q_DISABLE_COPY(AboutMenu)

public:
    explicit AboutMenu(QWidget *parent);

signals:
    void helpRequested();
    void aboutRequested();

private:
    QAction *addEntry(const QString &text, const QString &name);
};
