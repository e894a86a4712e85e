#include "ui/text/plaintooltip.h"

#include "ui/text/textwrap.h"

#include <QTextDocument>

QString plainToolTip(const QString &text)
{
    const QString shown = rowPart(text); // a tip of a megabyte takes seconds to lay out
    return Qt::mightBeRichText(shown) ? Qt::convertFromPlainText(shown) : shown;
}
