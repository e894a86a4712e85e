#include "ui/style/tooltiplook.h"

#include "ui/style/roundedmask.h"
#include "ui/style/styles.h"

#include <QCoreApplication>
#include <QEvent>
#include <QWidget>

namespace {

void setLook(QWidget &tip)
{
    const QString look = styles::toolTip;
    if (tip.styleSheet() != look) {
        tip.setStyleSheet(look);
    }
}

} // namespace

ToolTipLook::ToolTipLook(QObject *parent)
    : QObject(parent)
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool ToolTipLook::eventFilter(QObject *watched, QEvent *event)
{
    const QEvent::Type type = event->type();
    if ((type != QEvent::Polish && type != QEvent::StyleChange && type != QEvent::Show
         && type != QEvent::Resize && type != QEvent::Paint)
        || !watched->isWidgetType() || !watched->inherits("QTipLabel")) {
        return false;
    }
    auto &tip = *static_cast<QWidget *>(watched);
    if (type == QEvent::Polish) {
        tip.setAttribute(Qt::WA_TranslucentBackground);
        setLook(tip);
    } else if (type == QEvent::StyleChange) {
        setLook(tip); // Qt has set that of the widget below it, and measures the tip next
    } else if (type == QEvent::Paint) {
        fillWithoutCompositor(tip, Qt::white);
    } else if (type == QEvent::Show || tip.isVisible()) {
        cutWithoutCompositor(tip, tip.rect(), styles::floatingRadius);
    }
    return false;
}
