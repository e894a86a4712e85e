#include "ui/style/myproxystyle.h"

MyProxyStyle::MyProxyStyle(QObject *parent)
{
    setParent(parent);
}

int MyProxyStyle::styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                            QStyleHintReturn *returnData) const
{
    if (hint == QStyle::SH_TextControl_FocusIndicatorTextCharFormat) {
        return 0;
    }
    return QProxyStyle::styleHint(hint, option, widget, returnData);
}
