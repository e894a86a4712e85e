#include "ui/text/tablesizes.h"

#include "ui/text/resourceguard.h"

#include <QTextDocument>
#include <QTextFormat>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

// Px. As many cells as an answer may have, each with this around it, stay far below what Qt can add
// up, about 33 million.
constexpr double largest = 1000;

constexpr std::array<QTextFormat::Property, 13> sizes{
    QTextFormat::FrameBorder,
    QTextFormat::FrameMargin,
    QTextFormat::FramePadding,
    QTextFormat::FrameTopMargin,
    QTextFormat::FrameBottomMargin,
    QTextFormat::FrameLeftMargin,
    QTextFormat::FrameRightMargin,
    QTextFormat::TableCellSpacing,
    QTextFormat::TableCellPadding,
    QTextFormat::TableCellTopPadding,
    QTextFormat::TableCellBottomPadding,
    QTextFormat::TableCellLeftPadding,
    QTextFormat::TableCellRightPadding,
};

bool hasHugeSize(const QTextFormat &format)
{
    return std::any_of(sizes.cbegin(), sizes.cend(), [&format](QTextFormat::Property property) {
        // Written so that what is no number counts as huge.
        return !(std::abs(format.doubleProperty(property)) <= largest);
    });
}

} // namespace

bool hasHugeTables(const QString &html)
{
    if (!html.contains(QLatin1String("table"), Qt::CaseInsensitive)) {
        return false;
    }
    // The document knows what is a size better than any search would; it is never laid out.
    ResourceGuard guard(nullptr);
    auto *document = new QTextDocument(&guard);
    document->setHtml(html);
    const QVector<QTextFormat> formats = document->allFormats();
    return std::any_of(formats.cbegin(), formats.cend(), hasHugeSize);
}
