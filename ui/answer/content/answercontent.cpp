#include "ui/answer/content/answercontent.h"

#include "app/base/logstream.h"
#include "ui/answer/content/replypieces.h"
#include "ui/answer/picture/base64.h"
#include "ui/answer/picture/conversationpictures.h"
#include "ui/answer/picture/inlinepicture.h"
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

#include <algorithm>
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

AnswerContent::AnswerContent(const QString &title, ConversationPictures &pictures, QWidget *bubble)
    : QListWidget(bubble)
    , m_pictures(pictures)
{
    setStyleSheet(styles::plainList);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus); // its texts and pictures take the focus
    setAccessibleName(readableText(shownPart(title)));
}

AnswerContent::AnswerContent(const QString &reply, const QString &title,
                             ConversationPictures &pictures, QWidget *bubble)
    : AnswerContent(title, pictures, bubble)
{
    QVector<ReplyPiece> pieces = splitReply(reply);
    const bool cut = limitRows(pieces);
    joinFarRows(pieces);
    MarkupBudget budget;
    for (const ReplyPiece &piece : qAsConst(pieces)) {
        if (piece.kind == ReplyPiece::Kind::Text) {
            addParagraph(piece.source, budget);
        } else {
            addPictureRow(addPicture(piece.source, title));
        }
    }
    if (cut) {
        LOG_WARNING() << "answer is too long to be shown whole, characters: " << reply.size();
        addParagraph(QCoreApplication::translate("QARegion", "（内容过长，仅显示前一部分。）"),
                     budget);
    }
}

AnswerContent::AnswerContent(const QVector<ContentRow> &rows, const QString &title,
                             ConversationPictures &pictures, QWidget *bubble)
    : AnswerContent(title, pictures, bubble)
{
    MarkupBudget budget;
    for (const ContentRow &row : rows) {
        if (row.picture < 0) {
            addParagraph(row.paragraph, budget);
        } else {
            addPictureRow(row.picture);
        }
    }
}

int AnswerContent::addPicture(const QString &source, const QString &title)
{
    const QByteArray bytes = bytesOfBase64(inlinePictureText(source));
    const int number
        = m_pictures.add(bytes, title, isAnimatedPicture(source), devicePixelRatioF(), m_costLeft);
    saveAnimation(source, bytes, animationFile(number));
    return number;
}

void AnswerContent::addPictureRow(int number)
{
    auto *row = new PictureRow(viewport());
    m_pictures.showIn(row, number);
    m_pictureRows.append(row);
    m_rows.append({QString(), number});
    row->joinListAs(addRow(row));
    connect(row, &PictureRow::heightChanged, this, &AnswerContent::measureRows);
}

void AnswerContent::measureRows()
{
    m_contentHeight = 0;
    for (int row = 0; row < count(); ++row) {
        m_contentHeight = qMin(m_contentHeight + item(row)->sizeHint().height(), mostContentHeight);
    }
    emit heightChanged();
}

bool AnswerContent::maySleep() const
{
    return std::all_of(m_rows.cbegin(), m_rows.cend(), [this](const ContentRow &row) {
        return row.picture < 0 || m_pictures.maySleep(row.picture);
    });
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
    m_rows.append({source, -1});
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
