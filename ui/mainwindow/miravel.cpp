#include "ui/mainwindow/miravel.h"

Miravel::Miravel(QWidget *parent)
    : QWidget(parent)
{
    setFixedSize(920, 640);
    setWindowFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowSystemMenuHint
                   | Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint);
}

void Miravel::startForVdiClient()
{
}

void Miravel::startForLauncher()
{
}
