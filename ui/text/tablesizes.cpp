#include "ui/text/tablesizes.h"

#include "ui/text/markuptags.h"
#include "ui/text/resourceguard.h"

#include <QTextDocument>
#include <QTextFormat>
#include <QTextTable>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

// Px. As many cells as an answer may have, each with this around it, stay far below what Qt can add
// up, about 33 million.
constexpr double largest = 1000;

// More than any answer has whose markup may be laid out.
constexpr qint64 mostCells = 2200;

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

/// The cells of all tables below \a frame: one wherever a row of a table meets a column.
qint64 cellsIn(const QTextFrame *frame)
{
    qint64 cells = 0;
    if (const auto *table = qobject_cast<const QTextTable *>(frame)) {
        cells = qint64(table->rows()) * table->columns();
    }
    const QList<QTextFrame *> children = frame->childFrames();
    for (const QTextFrame *child : children) {
        cells += cellsIn(child);
    }
    return cells;
}

} // namespace

bool hasHugeTables(const QString &html)
{
    if (!html.contains(QLatin1String("table"), Qt::CaseInsensitive) && !mayBeDisguised(html)) {
        return false;
    }
    // The document knows what is a size better than any search would; it is never laid out.
    ResourceGuard guard(nullptr);
    auto *document = new QTextDocument(&guard);
    document->setHtml(html);
    const QVector<QTextFormat> formats = document->allFormats();
    return std::any_of(formats.cbegin(), formats.cend(), hasHugeSize)
        || cellsIn(document->rootFrame()) > mostCells;
}
