#include "ui/style/housemenu.h"

#include "ui/style/roundedmask.h"
#include "ui/style/styles.h"

HouseMenu::HouseMenu(QWidget *parent)
    : QMenu(parent)
{
    setWindowFlags(windowFlags() | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint);
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_DeleteOnClose);
    setStyleSheet(styles::menu);
}

void HouseMenu::showEvent(QShowEvent *event)
{
    cutWithoutCompositor(*this, rect(), styles::floatingRadius);
    QMenu::showEvent(event);
}

void HouseMenu::paintEvent(QPaintEvent *event)
{
    fillWithoutCompositor(*this, Qt::white);
    QMenu::paintEvent(event);
}
