#include "ui/text/richtext.h"

#include "ui/text/markupbudget.h"

#include <QTextDocument>
#include <QTextDocumentFragment>

QString asTyped(const QString &text)
{
    if (!Qt::mightBeRichText(text)) {
        return text;
    }
    return QStringLiteral("<span style=\"white-space:pre-wrap\">") + text.toHtmlEscaped()
         + QStringLiteral("</span>");
}

QString readableText(const QString &text)
{
    if (!Qt::mightBeRichText(text)) {
        return text;
    }
    MarkupBudget budget;
    return QTextDocumentFragment::fromHtml(budget.affordable(text)).toPlainText();
}
