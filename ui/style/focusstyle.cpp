#include "ui/style/focusstyle.h"

#include "ui/style/focusmark.h"

#include <QApplication>
#include <QStyleOption>

FocusStyle::FocusStyle()
{
    QCoreApplication::instance()->installEventFilter(this);
}

void FocusStyle::install()
{
    if (qobject_cast<FocusStyle *>(QApplication::style()) == nullptr) {
        QApplication::setStyle(new FocusStyle); // which takes it
    }
}

void FocusStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option,
                               QPainter *painter, const QWidget *widget) const
{
    if (element != PE_FrameFocusRect) {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
        return;
    }
    if (option->state.testFlag(State_KeyboardFocusChange) && FocusMark::of(widget) == nullptr) {
        drawFocusLine(*painter, option->rect);
    }
}

int FocusStyle::styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                          QStyleHintReturn *returnData) const
{
    if (hint == SH_ToolTip_Mask) {
        return 0; // Windows' own would replace it whenever a tool tip changes its size
    }
    return QProxyStyle::styleHint(hint, option, widget, returnData);
}

bool FocusStyle::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::MouseButtonPress && watched->isWidgetType()) {
        QWidget *window = static_cast<QWidget *>(watched)->window();
        if (window->testAttribute(Qt::WA_KeyboardFocusChange)) {
            window->setAttribute(Qt::WA_KeyboardFocusChange, false);
            if (QWidget *focused = window->focusWidget()) {
                focused->update();
                if (FocusMark *mark = FocusMark::of(focused)) {
                    mark->refresh();
                }
            }
        }
    }
    return QProxyStyle::eventFilter(watched, event);
}
