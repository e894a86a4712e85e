#include "ui/text/fontsizes.h"

#include "ui/text/markuptags.h"
#include "ui/text/resourceguard.h"

#include <QTextDocument>
#include <QTextFormat>

#include <algorithm>

namespace {

constexpr int largest = 200; ///< px or points
constexpr int digitsOfHuge = 3;

/// Whether \a text holds a number of many digits, or one with an exponent.
bool holdsLongNumber(const QString &text)
{
    int digits = 0;
    return std::any_of(text.cbegin(), text.cend(), [&digits](QChar character) {
        const bool isExponent = digits > 0 && character.toLower() == QLatin1Char('e');
        digits = character.isDigit() ? digits + 1 : 0;
        return isExponent || digits >= digitsOfHuge;
    });
}

} // namespace

bool hasHugeFonts(const QString &html)
{
    const bool saysHugeFont
        = html.contains(QLatin1String("font"), Qt::CaseInsensitive) && holdsLongNumber(html);
    if (!saysHugeFont && !mayBeDisguised(html)) {
        return false;
    }
    // The document knows what is a size better than any search would; it is never laid out.
    ResourceGuard guard(nullptr);
    auto *document = new QTextDocument(&guard);
    document->setHtml(html);
    const QVector<QTextFormat> formats = document->allFormats();
    return std::any_of(formats.cbegin(), formats.cend(), [](const QTextFormat &format) {
        return format.intProperty(QTextFormat::FontPixelSize) > largest
            || format.doubleProperty(QTextFormat::FontPointSize) > largest;
    });
}
