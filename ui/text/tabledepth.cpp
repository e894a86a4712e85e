#include "ui/text/tabledepth.h"

#include "app/base/logstream.h"
#include "ui/text/markuptags.h"
#include "ui/text/resourceguard.h"

#include <QTextDocument>
#include <QTextFrame>
#include <QTextTable>

namespace {

constexpr int harmlessTables = 2; ///< so few cannot lie deep
constexpr int deepest = 4;
constexpr int deepestOfLongTexts = 2;
constexpr int longText = 20000; ///< characters

int depthOf(const QTextFrame *frame)
{
    int below = 0;
    const QList<QTextFrame *> children = frame->childFrames();
    for (const QTextFrame *child : children) {
        below = qMax(below, depthOf(child));
    }
    return below + (qobject_cast<const QTextTable *>(frame) != nullptr ? 1 : 0);
}

} // namespace

QString withoutDeepTables(const QString &html)
{
    if (html.count(QLatin1String("table"), Qt::CaseInsensitive) <= harmlessTables
        && !mayBeDisguised(html)) {
        return html;
    }
    // The document knows what is a table better than any search would; it is never laid out.
    ResourceGuard guard(nullptr);
    auto *document = new QTextDocument(&guard);
    document->setHtml(html);
    const int depth = depthOf(document->rootFrame());
    if (depth <= (html.size() > longText ? deepestOfLongTexts : deepest)) {
        return html;
    }
    LOG_WARNING() << "tables lie too deep in each other: " << depth;
    return QLatin1String("<p>")
         + document->toPlainText().toHtmlEscaped().replace(QLatin1Char('\n'), QLatin1String("<br>"))
         + QLatin1String("</p>");
}
