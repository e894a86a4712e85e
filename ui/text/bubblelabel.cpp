#include "ui/text/bubblelabel.h"

#include "ui/text/linklabel.h"
#include "ui/text/markupbudget.h"
#include "ui/text/resourceguard.h"
#include "ui/text/textwrap.h"

#include <QLabel>
#include <QTextDocument>

QLabel *makeBubbleLabel(const QString &styleSheet, QWidget *parent)
{
    auto *label = new LinkLabel(parent);
    label->setStyleSheet(styleSheet);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::LinksAccessibleByMouse
                                   | Qt::LinksAccessibleByKeyboard);
    label->setContextMenuPolicy(Qt::CustomContextMenu);
    return label;
}

namespace {

void setText(QLabel *label, const QString &text, MarkupBudget &budget)
{
    const bool isRich = label->textFormat() != Qt::PlainText && Qt::mightBeRichText(text);
    const QString shown = withoutMarkRuns(text);
    label->setText(isRich ? budget.affordable(shown) : shown);
    ResourceGuard::guard(label); // which has a document now, but has not read the text yet
    label->adjustSize();
    if (isRich) {
        // Else Qt reads the markup for it once more, unguarded, and without ampersands.
        label->setAccessibleName(label->findChild<QTextDocument *>()->toPlainText());
    }
}

} // namespace

void setBubbleText(QLabel *label, const QString &text)
{
    MarkupBudget budget;
    setText(label, text, budget);
}

void setWrappedText(QLabel *label, const QString &text)
{
    MarkupBudget budget;
    setWrappedText(label, text, budget);
}

void setWrappedText(QLabel *label, const QString &text, MarkupBudget &budget)
{
    // The text comes last, or a long one would be laid out several times.
    label->ensurePolished();
    label->setFixedWidth(textMaxWidth);
    label->setWordWrap(true);
    setText(label, text, budget);
}
