#include "ui/text/markupbudget.h"

#include "app/base/logstream.h"
#include "ui/text/fontsizes.h"
#include "ui/text/markupscan.h"
#include "ui/text/tabledepth.h"
#include "ui/text/tablesizes.h"

QString MarkupBudget::affordable(const QString &html)
{
    const double cost = markupCost(html, m_left);
    if (cost > m_left) {
        LOG_WARNING() << "markup takes too long to lay out, only its text is shown";
        return QLatin1String("<p>") + bareText(html) + QLatin1String("</p>");
    }
    m_left -= cost;
    if (hasHugeFonts(html)) {
        LOG_WARNING() << "fonts are too large to be shown, only the text is";
        return QLatin1String("<p>") + bareText(html) + QLatin1String("</p>");
    }
    if (hasHugeTables(html)) {
        LOG_WARNING() << "tables are too large to be shown, only their text is";
        return QLatin1String("<p>") + bareText(html) + QLatin1String("</p>");
    }
    return withoutDeepTables(html);
}
