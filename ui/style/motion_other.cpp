#include "ui/style/motion.h"

#include <QApplication>
#include <QStyle>

bool motionIsWanted()
{
    // The style asks the desktop's theme where there is one.
    return QApplication::style()->styleHint(QStyle::SH_Widget_Animate) != 0;
}
