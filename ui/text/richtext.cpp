#include "ui/text/richtext.h"

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
    return Qt::mightBeRichText(text) ? QTextDocumentFragment::fromHtml(text).toPlainText() : text;
}
