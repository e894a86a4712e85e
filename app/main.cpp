#include "ui/mainwindow/miravel.h"

#include <QApplication>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    Miravel window;
    window.show();
    return QApplication::exec();
}
