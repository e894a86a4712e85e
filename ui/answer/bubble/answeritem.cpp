#include "ui/answer/bubble/answeritem.h"

#include "ui/answer/bubble/foldbar.h"
#include "ui/answer/picture/picturerow.h"
#include "ui/style/styles.h"
#include "ui/text/bubblelabel.h"
#include "ui/text/richtext.h"
#include "ui/text/textwrap.h"

#include <QLabel>
#include <QPushButton>

namespace {

constexpr int titleMargin = 12;

/// An answer with more takes too long to be laid out again while the user scrolls.
constexpr int mostCharactersAsleep = 4000;
constexpr int rowCharacters = 7; ///< as many as a row costs
constexpr int mostPicturesAsleep = 50;

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

/// Whether \a rows are laid out again in a moment.
bool isSoonRebuilt(const QVector<ContentRow> &rows)
{
    int characters = 0;
    int pictures = 0;
    for (const ContentRow &row : rows) {
        characters += row.paragraph.size() + rowCharacters;
        pictures += row.picture < 0 ? 0 : 1;
    }
    return characters <= mostCharactersAsleep && pictures <= mostPicturesAsleep;
}

QLabel *makeSeparator(QWidget *bubble)
{
    auto *label = new QLabel(bubble);
    label->setStyleSheet(styles::separator);
    return label;
}

} // namespace

AnswerItem::AnswerItem(const QString &title, QWidget *parent)
    : ConversationItem(Speaker::AssistantAnswer, parent)
    , m_titleText(title)
{
    setAccessibleName(readableText(shownPart(title)));
    makeFrame();
}

void AnswerItem::makeFrame()
{
    m_bubble = addBubble();
    m_title = makeTitle(m_titleText, m_bubble);
    addText(m_title, 0);
    m_separator = makeSeparator(m_bubble);
    m_titleTerm = m_title->height() - 1 + titleMargin;
}

int AnswerItem::setReply(const QString &reply, const QString &title, ConversationPictures &pictures)
{
    m_pictures = &pictures;
    m_content = new AnswerContent(reply, title, pictures, m_bubble);
    connectContent();
    if (isSoonRebuilt(m_content->rows())) {
        m_rows = m_content->rows();
    }
    return m_content->contentHeight();
}

void AnswerItem::connectContent()
{
    int number = 0;
    for (QLabel *paragraph : m_content->paragraphs()) {
        addText(paragraph, ++number);
    }
    int row = 0;
    for (const ContentRow &source : m_content->rows()) {
        if (source.picture < 0) {
            continue;
        }
        const QPushButton *button = m_content->pictureRows().at(row++)->button();
        connect(button, &QPushButton::clicked, this,
                [this, picture = source.picture] { emit pictureClicked(picture); });
        connect(button, &QWidget::customContextMenuRequested, this,
                [this, picture = source.picture] { emit pictureMenuRequested(picture); });
    }
    connect(m_content, &AnswerContent::heightChanged, this, &AnswerItem::contentChanged);
}

/// Folds the answer as if its content had had this height from the beginning; one that is tall
/// stays as the user left it.
void AnswerItem::contentChanged()
{
    const FoldState initial = initialFoldState(m_content->contentHeight());
    const bool isTall = initial != FoldState::Unfolded;
    setFoldState(isTall && m_fold != FoldState::Unfolded ? m_fold : initial);
}

QLabel *AnswerItem::text(int number) const
{
    if (m_content == nullptr || number < 0 || number > m_content->paragraphs().size()) {
        return nullptr;
    }
    return number == 0 ? m_title : m_content->paragraphs().at(number - 1);
}

bool AnswerItem::canSleep() const
{
    return !m_rows.isEmpty() && m_content->maySleep();
}

void AnswerItem::forget()
{
    m_bubble = nullptr;
    m_title = nullptr;
    m_separator = nullptr;
    m_content = nullptr;
    m_openBar = nullptr;
    m_retractBar = nullptr;
    if (m_box != nullptr) {
        m_place = m_box->place();
        m_box = nullptr;
    }
}

void AnswerItem::rebuild()
{
    makeFrame();
    m_content = new AnswerContent(m_rows, m_titleText, *m_pictures, m_bubble);
    connectContent();
    if (m_measure != nullptr) {
        makeBox();
    }
    setFoldState(m_fold);
}

int AnswerItem::readCount() const
{
    return m_content == nullptr ? 0 : 1 + m_content->count() + partsBelowContent().size();
}

QWidget *AnswerItem::readPart(int number) const
{
    if (number == 0) {
        return m_title;
    }
    const int row = number - 1;
    return row < m_content->count() ? m_content->readPart(row)
                                    : partsBelowContent().value(row - m_content->count());
}

QVector<QWidget *> AnswerItem::partsBelowContent() const
{
    QVector<QWidget *> parts;
    if (m_openBar != nullptr) {
        parts.append((m_openBar->isHidden() ? m_retractBar : m_openBar)->button());
    }
    if (m_box != nullptr) {
        parts.append(m_box);
    }
    return parts;
}

void AnswerItem::setRecommends(const QVector<ListedQuestion> &recommends, QLabel *measure)
{
    m_recommends = recommends;
    m_measure = measure;
    makeBox();
}

void AnswerItem::makeBox()
{
    m_box
        = new RecommendBox(RecommendBox::Kind::BelowAnswer, m_recommends, m_measure, this, m_place);
    connect(m_box, &RecommendBox::recommendClicked, this, &AnswerItem::recommendClicked);
    connect(m_box, &RecommendBox::nextPageRequested, this, &AnswerItem::nextPageRequested);
}

void AnswerItem::showNextPage()
{
    wake();
    m_box->showNextPage();
}

void AnswerItem::makeBars()
{
    // Most answers are never folded, and a conversation holds thousands of them.
    const bool hasBox = m_box != nullptr;
    m_openBar = new FoldBar(QLatin1String("btn-open.png"), tr("展开"),
                            hasBox ? openBarLinesWithBox : barLines, m_bubble);
    m_retractBar = new FoldBar(QLatin1String("btn-retract.png"), tr("收起"),
                               hasBox ? retractBarLinesWithBox : barLines, m_bubble);
    connect(m_openBar, &FoldBar::clicked, this, [this] { emit foldRequested(FoldState::Opened); });
    connect(m_retractBar, &FoldBar::clicked, this,
            [this] { emit foldRequested(FoldState::Folded); });
}

/// A bar that goes hands the focus to the one that comes.
void AnswerItem::placeBars(const AnswerGeometry &places)
{
    FoldBar *const shown = places.openBar.isNull() ? m_retractBar : m_openBar;
    FoldBar *const hidden = shown == m_openBar ? m_retractBar : m_openBar;
    shown->placeAt(shown == m_openBar ? places.openBar : places.retractBar);
    if (hidden->holdsFocus()) {
        shown->takeFocus();
    }
    hidden->placeAt(hidden == m_openBar ? places.openBar : places.retractBar);
}

void AnswerItem::setFoldState(FoldState fold)
{
    m_fold = fold;
    wake(); // with that state, when it slept
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
        placeBars(places);
    }
    if (m_box != nullptr) {
        m_box->setGeometry(places.recommendBox);
    }
    setItemHeight(places.itemHeight);
}
