#include "ui/answer/copymenu.h"

#include <QAction>
#include <QCoreApplication>

namespace {

constexpr QSize menuSize(137, 37);
constexpr QSize rowSize(135, 37);
constexpr int topMargin = 4;
constexpr int bottomMargin = 6;
constexpr QRect shortcutPlace(88, 5, 38, 27);

QString text(const char *source)
{
    return QCoreApplication::translate("QARegion", source);
}

} // namespace

CopyMenu::CopyMenu(bool enabled, QWidget *parent)
    : ShortcutMenu(menuSize, parent)
{
    const QAction *copy = addRow({text(QT_TRANSLATE_NOOP("QARegion", "复制")),
                                  text(QT_TRANSLATE_NOOP("QARegion", "Ctrl+C")), rowSize, topMargin,
                                  bottomMargin, shortcutPlace},
                                 enabled);
    connect(copy, &QAction::triggered, this, &CopyMenu::copyRequested);
}
