#include "ui/answer/answeritem.h"

#include "ui/answer/answercontent.h"
#include "ui/answer/bubblelabel.h"
#include "ui/answer/foldbar.h"
#include "ui/answer/recommendbox.h"
#include "ui/answer/textwrap.h"
#include "ui/style/styles.h"

#include <QLabel>

namespace {

constexpr int titleMargin = 12;

// Tops in px of the lines of the bars.
const QVector<int> barLines{11};
const QVector<int> openBarLinesWithBox{11, 44};
const QVector<int> retractBarLinesWithBox{11, 42};

QLabel *makeTitle(const QString &title, QWidget *bubble)
{
    QLabel *label = makeBubbleLabel(styles::bubbleBoldText, bubble);
    label->setOpenExternalLinks(true);
    setWrappedText(label, shownPart(title));
    return label;
}

QLabel *makeSeparator(QWidget *bubble)
{
    auto *label = new QLabel(bubble);
    label->setStyleSheet(styles::separator);
    return label;
}

} // namespace

AnswerItem::AnswerItem(FrameOnly /*frame*/, const QString &title, const QString &reply,
                       QVector<ConversationPicture> &pictures, ConversationList *list)
    : ConversationItem(Speaker::AssistantAnswer, list)
    , m_bubble(addBubble())
    , m_title(makeTitle(title, m_bubble))
    , m_separator(makeSeparator(m_bubble))
    , m_content(new AnswerContent(reply, title, pictures, m_bubble))
    , m_titleTerm(m_title->height() - 1 + titleMargin)
{
    setAccessibleName(m_title->text());
}

void AnswerItem::makeBars()
{
    // Most answers are never folded, and a conversation holds thousands of them.
    const bool hasBox = m_box != nullptr;
    m_openBar = new FoldBar(QLatin1String("btn-open.png"), tr("展开"),
                            hasBox ? openBarLinesWithBox : barLines, m_bubble);
    m_retractBar = new FoldBar(QLatin1String("btn-retract.png"), tr("收起"),
                               hasBox ? retractBarLinesWithBox : barLines, m_bubble);
    connect(m_openBar, &FoldBar::clicked, this, &AnswerItem::openRequested);
    connect(m_retractBar, &FoldBar::clicked, this, &AnswerItem::retractRequested);
}

AnswerItem::AnswerItem(const QString &title, const QString &reply,
                       QVector<ConversationPicture> &pictures, ConversationList *list)
    : AnswerItem(FrameOnly(), title, reply, pictures, list)
{
    setFoldState(initialFoldState(m_content->contentHeight()));
}

AnswerItem::AnswerItem(const QString &title, const QString &reply,
                       QVector<ConversationPicture> &pictures, const QJsonArray &recommends,
                       QLabel *measure, ConversationList *list)
    : AnswerItem(FrameOnly(), title, reply, pictures, list)
{
    m_box = new RecommendBox(RecommendBox::Kind::BelowAnswer, recommends, measure, this);
    setFoldState(initialFoldState(m_content->contentHeight()));
}

void AnswerItem::setFoldState(FoldState fold)
{
    const AnswerGeometry places
        = answerGeometry(fold, m_box != nullptr, m_titleTerm, m_content->contentHeight());
    m_title->setGeometry(places.title);
    m_separator->setGeometry(places.titleSeparator);
    m_content->setGeometry(places.content);
    m_bubble->setGeometry(places.bubble);
    if (fold != FoldState::Unfolded && m_openBar == nullptr) {
        makeBars();
    }
    if (m_openBar != nullptr) {
        m_openBar->placeAt(places.openBar);
        m_retractBar->placeAt(places.retractBar);
    }
    if (m_box != nullptr) {
        m_box->setGeometry(places.recommendBox);
    }
    setItemSize(places.item);
}
