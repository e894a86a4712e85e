#include "ui/answer/recommend/recommendonlyitem.h"

namespace {

constexpr QRect boxPlace(83, 10, 461, 279);
constexpr int itemHeight = 299;

} // namespace

RecommendOnlyItem::RecommendOnlyItem(const QVector<ListedQuestion> &recommends, QLabel *measure,
                                     QWidget *parent)
    : ConversationItem(Speaker::AssistantAnswer, parent)
    , m_box(new RecommendBox(RecommendBox::Kind::OnItsOwn, recommends, measure, this))
{
    setAccessibleName(tr("推荐问题"));
    m_box->setGeometry(boxPlace);
    setItemHeight(itemHeight);
}

QWidget *RecommendOnlyItem::readPart(int number) const
{
    Q_UNUSED(number)
    return m_box;
}
