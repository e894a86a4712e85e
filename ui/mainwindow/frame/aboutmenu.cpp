#include "ui/mainwindow/frame/aboutmenu.h"

#include "ui/style/styles.h"

namespace {

constexpr int fontPixels = 12;

} // namespace

AboutMenu::AboutMenu(QWidget *parent)
    : HouseMenu(parent)
{
    setStyleSheet(styles::menu + styles::menuEntries);
    connect(addEntry(tr("帮助与反馈"), QStringLiteral("actHelp")), &QAction::triggered, this,
            &AboutMenu::helpRequested);
    connect(addEntry(tr("关于"), QStringLiteral("actAbout")), &QAction::triggered, this,
            &AboutMenu::aboutRequested);
}

QAction *AboutMenu::addEntry(const QString &text, const QString &name)
{
    QFont font(QStringLiteral("Arail,Microsoft YaHei")); // known by this name, misspelt as it is
    font.setPixelSize(fontPixels);
    QAction *action = addAction(text);
    action->setObjectName(name);
    action->setFont(font);
    return action;
}
