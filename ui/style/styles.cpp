#include "ui/style/styles.h"

#include "ui/style/displayscale.h"
#include "ui/style/sharppictures.h"

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

QString spriteRow(QLatin1String image, int row, int rows, int rowHeight)
{
    // The numbers cut the strip from above and below, so that one row is left.
    const QString stated = QStringLiteral("border-image:url(:/Images/%1) %2 0 %3 0;")
                               .arg(image, QString::number(row * rowHeight),
                                    QString::number((rows - 1 - row) * rowHeight));
    return anyScreenIsScaled() ? withStripsFor(true, stated) : stated;
}

QString threeStateSprite(QLatin1String image, int rowHeight)
{
    constexpr int rows = 3;
    return QStringLiteral("QPushButton{%1border:none;}QPushButton:hover{%2}QPushButton:pressed{%3}")
        .arg(spriteRow(image, 0, rows, rowHeight), spriteRow(image, 1, rows, rowHeight),
             spriteRow(image, 2, rows, rowHeight));
}

} // namespace styles
