#include "tests/ui/support/answerfold.h"

#include "ui/answer/bubble/foldbar.h"
#include "ui/answer/content/answercontent.h"
#include "ui/answer/picture/picturerow.h"
#include "ui/answer/qaregion.h"

#include <QImage>
#include <QJsonArray>
#include <QJsonObject>
#include <QLabel>

namespace {

constexpr int pictureMargin = 4;  // above a picture in its row
constexpr int inkLightness = 190; // the background is lighter, also at soft edges
constexpr int gapInsideLine = 2;  // blank px that some lines have in them

bool hasInk(const QImage &image, int y)
{
    for (int x = 0; x < image.width(); ++x) {
        const QColor colour = image.pixelColor(x, y);
        if (colour.alpha() > 0 && colour.lightness() < inkLightness) {
            return true;
        }
    }
    return false;
}

/// The lines of \a label, a paragraph whose row begins at \a top.
QVector<SeenRow> linesOf(QLabel *label, int top)
{
    const QImage image = label->grab().toImage();
    QVector<SeenRow> lines;
    for (int y = 0; y < image.height(); ++y) {
        if (!hasInk(image, y)) {
            continue;
        }
        if (lines.isEmpty() || y + top - lines.last().bottom > gapInsideLine) {
            lines.append({y + top, y + top, false});
        }
        lines.last().bottom = y + top + 1;
    }
    return lines;
}

QVector<SeenRow> rowsOf(const AnswerContent &content)
{
    QVector<SeenRow> rows;
    int top = 0;
    for (int i = 0; i < content.count(); ++i) {
        const QWidget *row = content.itemWidget(content.item(i));
        const int height = content.item(i)->sizeHint().height();
        if (dynamic_cast<const PictureRow *>(row) != nullptr) {
            rows.append({top + pictureMargin, top + height, true});
        } else {
            rows += linesOf(row->findChild<QLabel *>(), top);
        }
        top += height;
    }
    return rows;
}

/// The content of the only answer in \a region.
const AnswerContent *contentOf(const QARegion &region)
{
    const QList<QListWidget *> lists = region.findChildren<QListWidget *>();
    for (const QListWidget *list : lists) {
        if (const auto *content = dynamic_cast<const AnswerContent *>(list)) {
            return content;
        }
    }
    return nullptr;
}

} // namespace

QString AnswerFold::mistake(int slack) const
{
    if (rows.isEmpty() || rows.first().isPicture) {
        return QStringLiteral("the first row is no text");
    }
    for (const SeenRow &row : rows) {
        const int allowed = row.isPicture ? 0 : slack;
        if (row.top + allowed < fold && fold < row.bottom - allowed) {
            return QStringLiteral("the row from %1 to %2 is cut at %3")
                .arg(row.top)
                .arg(row.bottom)
                .arg(fold);
        }
    }
    return {};
}

AnswerFold measureFold(const QString &question, const QString &reply, bool hasRecommends)
{
    QARegion region;
    if (hasRecommends) {
        const QJsonArray recommends{QJsonObject{{QStringLiteral("question"), question}}};
        region.MULTI_QA_RESULT(question, question, reply, recommends);
    } else {
        region.QA_NORMAL_RESULT(question, question, reply);
    }
    const AnswerContent *content = contentOf(region);
    const auto *bar = region.findChild<FoldBar *>(); // the open bar is made first
    AnswerFold result;
    if (content == nullptr) {
        return result;
    }
    result.rows = rowsOf(*content);
    result.height = content->contentHeight();
    result.fold = bar == nullptr || bar->isHidden() ? 0 : bar->y() - content->y();
    return result;
}
