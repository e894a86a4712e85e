#include "ui/style/windowsize.h"

#include <QApplication>
#include <QFont>
#include <QLabel>

/// The least that any window of the program's size and font costs.
int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QApplication::setFont(QFont(QStringLiteral("Microsoft YaHei")));
    QLabel window(QStringLiteral("您好"));
    window.setFixedSize(windowSize);
    window.show();
    return QApplication::exec();
}
