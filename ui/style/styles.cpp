#include "ui/style/styles.h"

namespace styles {

QString thinScrollBar(int verticalPadding)
{
    return QStringLiteral(
               "QScrollBar:vertical{width:14px;background:transparent;margin:0px 10px 0px 0px;"
               "padding-top:%1px;padding-bottom:%1px;}"
               "QScrollBar::handle:vertical{background:rgba(207,207,207,70%);border-radius:2px;"
               "min-height:30px;}"
               "QScrollBar::handle:vertical:hover{background:rgba(207,207,207,100%);}"
               "QScrollBar::handle:vertical:pressed{background:rgba(207,207,207,100%);}"
               "QScrollBar::add-page:vertical,QScrollBar::sub-page:vertical{background:"
               "transparent;}"
               "QScrollBar::add-line:vertical,QScrollBar::sub-line:vertical{height:0px;background:"
               "transparent;}")
        .arg(verticalPadding);
}

QString threeStateSprite(QLatin1String image, int rowHeight)
{
    // The numbers cut the strip from above and below, so that one row is left.
    return QStringLiteral(
               "QPushButton{border-image:url(:/Images/%1) 0 0 %3 0;border:none;}"
               "QPushButton:hover{border-image:url(:/Images/%1) %2 0 %2 0;border:none;}"
               "QPushButton:pressed{border-image:url(:/Images/%1) %3 0 0 0;border:none;}")
        .arg(image, QString::number(rowHeight), QString::number(2 * rowHeight));
}

} // namespace styles
