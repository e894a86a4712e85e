#include "ui/answer/recommend/recommendbox.h"

#include "ui/answer/recommend/recommendpaging.h"
#include "ui/style/focusmark.h"
#include "ui/style/styles.h"

#include <QLabel>
#include <QPushButton>

namespace {

const QLatin1String boldHeading(
    "QLabel{color:rgb(29,38,51);font:bold 14px Microsoft YaHei;text-align: left;border:none;}");
const QLatin1String
    heading("QLabel{color:rgb(29,38,51);font:14px Microsoft YaHei;text-align: left;border:none;}");
const QLatin1String subHeading(
    "QLabel{color:rgb(117,117,117);font:14px Microsoft YaHei;text-align: left;border:none;}");
const QLatin1String footText("QLabel{color:rgb(117, 117, 117);font:14px Microsoft YaHei;}");
const QLatin1String switchButton(
    "QPushButton{background:url(:/Images/btn-switch-association.png) no-repeat;margin-left: 0px;"
    "margin-top:0px;text-align: right bottom; padding-right: 0px;  padding-bottom: -1px;color:rgb("
    "117,117,117);}QPushButton:hover{background:url(:/Images/btn-switch-hover.png) no-repeat;color:"
    "rgb(41,100,245);}QPushButton:pressed{background:url(:/Images/btn-switch-pressed.png) no-repeat;"
    "color:rgb(37,90,219);}QPushButton{background-color: transparent;border:none;font:13px "
    "Microsoft YaHei;}");

} // namespace

/// Places in px inside the box.
struct RecommendBox::Layout
{
    QRect page;
    QRect separator;
    QRect hint;
    QRect button;
};

const RecommendBox::Layout &RecommendBox::layoutOf(Kind kind)
{
    static const Layout belowAnswer{
        {11, 43, 440, 155}, {11, 207, 438, 1}, {11, 219, 140, 20}, {385, 223, 64, 14}};
    static const Layout onItsOwn{
        {11, 68, 440, 155}, {11, 232, 438, 1}, {11, 244, 140, 20}, {385, 248, 64, 14}};
    return kind == Kind::BelowAnswer ? belowAnswer : onItsOwn;
}

RecommendBox::RecommendBox(Kind kind, const QVector<ListedQuestion> &recommends, QLabel *measure,
                           QWidget *parent, const Place &place)
    : QWidget(parent)
    , m_kind(kind)
    , m_recommends(recommends)
    , m_measure(measure)
    , recommendCursor(place.isLater ? place.cursor : recommendRowsPerPage)
    , m_isLater(place.isLater)
{
    setAttribute(Qt::WA_StyledBackground);
    setStyleSheet(styles::assistantBubble);
    auto elision = RecommendPage::Elision::FirstOfAnswer;
    if (kind == Kind::BelowAnswer) {
        addHeading(tr("如果未解决您的问题，试试下面的问法："), {11, 12, 260, 19}, boldHeading);
    } else {
        addHeading(tr("您是要咨询以下问题么？"), {11, 12, 238, 19}, heading);
        addHeading(tr("大家都在问："), {11, 43, 84, 19}, subHeading);
        elision = RecommendPage::Elision::FirstOfBox;
    }
    addPage(0, elision);
    if (place.isLater) {
        addPage(place.cursor, RecommendPage::Elision::Later); // covers the first as before
    }
    addFoot(layoutOf(kind));
}

void RecommendBox::showNextPage()
{
    recommendCursor = nextRecommendCursor(recommendCursor, m_recommends.size());
    m_isLater = true;
    addPage(recommendCursor, RecommendPage::Elision::Later);
    m_page->show(); // covers the earlier page, which stays below it
}

void RecommendBox::addHeading(const QString &text, const QRect &place, const QString &style)
{
    auto *label = new QLabel(text, this);
    label->setStyleSheet(style);
    label->setGeometry(place);
    m_headings.append(label);
}

void RecommendBox::addFoot(const Layout &layout)
{
    auto *line = new QLabel(this);
    line->setStyleSheet(styles::separator);
    line->setGeometry(layout.separator);
    auto *hint = new QLabel(tr("没有您想了解的问题？"), this);
    hint->setStyleSheet(footText);
    hint->setGeometry(layout.hint);
    m_next = new QPushButton(tr("换一换"), this);
    m_next->setStyleSheet(switchButton);
    m_next->setCursor(Qt::PointingHandCursor);
    m_next->setGeometry(layout.button);
    new FocusMark(m_next);
    connect(m_next, &QPushButton::clicked, this, &RecommendBox::nextPageRequested);
    m_foot = {hint, m_next};
}

void RecommendBox::addPage(int start, RecommendPage::Elision elision)
{
    auto *page = new RecommendPage(m_recommends, start, elision, m_measure, this);
    page->setGeometry(layoutOf(m_kind).page);
    connect(page, &RecommendPage::recommendClicked, this, &RecommendBox::recommendClicked);
    if (m_page != nullptr) {
        cover(m_page);
    }
    m_page = page;
}

/// The page stays below the next one, where neither key nor reader may find it.
void RecommendBox::cover(RecommendPage *page)
{
    if (page->isAncestorOf(window()->focusWidget())) {
        m_next->setFocus();
    }
    page->setEnabled(false);
}

QVector<QWidget *> RecommendBox::parts() const
{
    return m_headings + m_page->questions() + m_foot;
}
