#include "ui/text/richtext.h"

#include "fuzz/support/check.h"
#include "fuzz/support/target.h"
#include "ui/style/styles.h"
#include "ui/text/bubblelabel.h"
#include "ui/text/linkaddress.h"
#include "ui/text/markupbudget.h"
#include "ui/text/textwrap.h"

#include <QLabel>
#include <QTextDocument>
#include <QUrl>

namespace {

/// Whether an address that is shown may hold \a character.
bool isHarmless(QChar character)
{
    return character.category() != QChar::Other_Format
        && character.category() != QChar::Other_Control;
}

void checkLink(const QString &address)
{
    const QUrl url(address);
    const QStringList allowed{QStringLiteral("http"), QStringLiteral("https"),
                              QStringLiteral("mailto")};
    check(!mayBeOpened(url) || allowed.contains(url.scheme()), "a link leads to the web");
    const QString shown = readableAddress(address);
    check(std::all_of(shown.cbegin(), shown.cend(), isHarmless),
          "nothing in a shown address turns or hides it");
    (void)linkToolTip(address);
}

/// Lays \a html out as a paragraph of an answer, paints it and follows the focus through its links.
void show(const QString &html)
{
    QWidget parent;
    MarkupBudget budget;
    QLabel *label = makeBubbleLabel(styles::paragraph, &parent);
    label->setOpenExternalLinks(true);
    setWrappedText(label, html, budget);
    check(label->width() == textMaxWidth, "a paragraph has the width of all");
    check(label->height() >= 0 && label->height() <= QWIDGETSIZE_MAX, "a paragraph has a height");
    (void)label->grab(QRect(0, 0, textMaxWidth, qMin(label->height(), 600)));
    if (auto *document = label->findChild<QTextDocument *>()) {
        check(label->accessibleName() == document->toPlainText(), "what is read is what is shown");
    }
}

} // namespace

/// Rich text of any kind, tables in tables too, as paragraphs and titles show it. What takes too
/// long is seen by the fuzzer's time limit.
void runTarget(const QByteArray &input)
{
    const QString html = QString::fromUtf8(input);
    show(QLatin1String("<p>") + html + QLatin1String("</p>"));
    const QString plain = readableText(asTyped(html));
    check(!Qt::mightBeRichText(html) || !plain.contains(QChar::ObjectReplacementCharacter)
              || html.contains(QChar::ObjectReplacementCharacter),
          "a typed text is no markup");
    (void)readableText(shownPart(html));
    checkLink(html);
}
