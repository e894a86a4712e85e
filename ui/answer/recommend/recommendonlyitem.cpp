#include "ui/answer/recommend/recommendonlyitem.h"

namespace {

constexpr QRect boxPlace(83, 10, 461, 279);
constexpr int itemHeight = 299;

} // namespace

RecommendOnlyItem::RecommendOnlyItem(const QVector<ListedQuestion> &recommends, QLabel *measure,
                                     QWidget *parent)
    : ConversationItem(Speaker::AssistantAnswer, parent)
    , m_recommends(recommends)
    , m_measure(measure)
{
    setAccessibleName(tr("推荐问题"));
    RecommendOnlyItem::rebuild();
    setItemHeight(itemHeight);
}

void RecommendOnlyItem::rebuild()
{
    m_box = new RecommendBox(RecommendBox::Kind::OnItsOwn, m_recommends, m_measure, this, m_place);
    m_box->setGeometry(boxPlace);
    connect(m_box, &RecommendBox::recommendClicked, this, &RecommendOnlyItem::recommendClicked);
    connect(m_box, &RecommendBox::nextPageRequested, this, &RecommendOnlyItem::nextPageRequested);
}

void RecommendOnlyItem::forget()
{
    m_place = m_box->place();
    m_box = nullptr;
}

void RecommendOnlyItem::showNextPage()
{
    wake();
    m_box->showNextPage();
}

QWidget *RecommendOnlyItem::readPart(int number) const
{
    Q_UNUSED(number)
    return m_box;
}
