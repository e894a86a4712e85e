#include "ui/answer/content/answercontent.h"

#include "app/base/logstream.h"
#include "ui/answer/content/replypieces.h"
#include "ui/answer/picture/base64.h"
#include "ui/answer/picture/picturerow.h"
#include "ui/preview/animationfile.h"
#include "ui/style/myproxystyle.h"
#include "ui/style/styles.h"
#include "ui/text/bubblelabel.h"
#include "ui/text/markupbudget.h"
#include "ui/text/richtext.h"
#include "ui/text/textwrap.h"

#include <QCoreApplication>
#include <QLabel>
#include <QPalette>
#include <QPointer>
#include <QPushButton>

#include <memory>

namespace {

constexpr int paragraphPixelSize = 14;
constexpr int mostContentHeight = QWIDGETSIZE_MAX - 2000; ///< px; title, bars and box come on top

QFont paragraphFont()
{
    QFont font(QCoreApplication::translate("QARegion", "Microsoft YaHei"));
    font.setPixelSize(paragraphPixelSize);
    return font;
}

/// Paragraphs are written in the colour of the titles, which their style leaves open.
QPalette paragraphPalette(const QWidget &label)
{
    const QColor colour(29, 38, 51);
    QPalette palette = label.palette();
    palette.setColor(QPalette::WindowText, colour);
    palette.setColor(QPalette::Text, colour); // what counts inside a list
    return palette;
}

/// One for all paragraphs: each builds a whole style of its own to stand on.
MyProxyStyle *paragraphStyle()
{
    static QPointer<MyProxyStyle> style;
    if (style == nullptr) {
        style = new MyProxyStyle(QCoreApplication::instance());
    }
    return style;
}

QWidget *makeRow(QWidget *parent)
{
    auto *row = new QWidget(parent);
    row->setContentsMargins(0, 0, 0, 0);
    row->setStyleSheet(styles::transparentItem);
    return row;
}

} // namespace

AnswerContent::AnswerContent(const QString &reply, const QString &title,
                             QVector<ConversationPicture> &pictures, QWidget *bubble)
    : QListWidget(bubble)
{
    setStyleSheet(styles::plainList);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus); // its texts and pictures take the focus
    setAccessibleName(readableText(shownPart(title)));
    QVector<ReplyPiece> pieces = splitReply(reply);
    const bool cut = limitRows(pieces);
    joinFarRows(pieces);
    MarkupBudget budget;
    for (const ReplyPiece &piece : qAsConst(pieces)) {
        if (piece.kind == ReplyPiece::Kind::Text) {
            addParagraph(piece.source, budget);
        } else {
            addPicture(piece.source, title, pictures);
        }
    }
    if (cut) {
        LOG_WARNING() << "answer is too long to be shown whole, characters: " << reply.size();
        addParagraph(QCoreApplication::translate("QARegion", "（内容过长，仅显示前一部分。）"),
                     budget);
    }
}

void AnswerContent::addPicture(const QString &source, const QString &title,
                               QVector<ConversationPicture> &pictures)
{
    const QStringRef base64Data = inlinePictureText(source);
    QByteArray bytes = bytesOfBase64(base64Data);
    const QSize size = pictureSize(bytes);
    const bool isDear = isDecodable(size) && pixelsOf(size) > m_pixelsLeft;
    const QPixmap pixmap = isDear ? QPixmap() : decodePicture(bytes);
    m_pixelsLeft -= pixelsOf(pixmap.size());
    if (!isDear && pixmap.isNull()) {
        bytes.clear();
    }
    const QString file = animationFile(pictures.size());
    auto *row = new PictureRow(isDear ? size : pixmap.size(), viewport());
    pictures.append({pixmap, bytes, title, isAnimatedPicture(source), row});
    keepNewestDecoded(pictures);
    m_pictureRows.append(row);
    saveAnimation(source, base64Data, file);
    if (isDear) {
        row->showLater(source, bytes, size, file);
    } else {
        row->showPicture(source, pixmap, file);
    }
    row->fitToPicture(source, row->label()->width());
    row->joinListAs(addRow(row));
}

void AnswerContent::addParagraph(const QString &source, MarkupBudget &budget)
{
    QWidget *row = makeRow(viewport());
    QLabel *label = makeBubbleLabel(styles::paragraph, row);
    label->setStyle(paragraphStyle());
    label->setOpenExternalLinks(true);
    label->setFont(paragraphFont());
    label->setPalette(paragraphPalette(*label));
    setWrappedText(label, QLatin1String("<p>") + source + QLatin1String("</p>"), budget);
    label->move(0, 0);
    row->setFixedSize(textMaxWidth, label->height());
    m_paragraphs.append(label);
    addRow(row);
}

QListWidgetItem *AnswerContent::addRow(QWidget *row)
{
    auto made = std::make_unique<QListWidgetItem>();
    made->setSizeHint(row->size());
    addItem(made.get());
    QListWidgetItem *item = made.release(); // owned by the list since addItem()
    setItemWidget(item, row);
    // No widget can be higher; sizes that a rich text asks for may be absurd.
    m_contentHeight = qMin(m_contentHeight + row->height(), mostContentHeight);
    return item;
}

QWidget *AnswerContent::readPart(int row) const
{
    QWidget *const widget = itemWidget(item(row));
    if (const auto *picture = qobject_cast<PictureRow *>(widget)) {
        return picture->button();
    }
    return widget == nullptr ? nullptr : widget->findChild<QLabel *>();
}
