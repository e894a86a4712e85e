#include "ui/answer/recommend/recommendonlyitem.h"

namespace {

constexpr QRect boxPlace(83, 10, 461, 279);
constexpr QSize itemSize(648, 299);

} // namespace

RecommendOnlyItem::RecommendOnlyItem(const QVector<ListedQuestion> &recommends, QLabel *measure,
                                     ConversationList *list)
    : ConversationItem(Speaker::AssistantAnswer, list)
    , m_box(new RecommendBox(RecommendBox::Kind::OnItsOwn, recommends, measure, this))
{
    readAs(tr("推荐问题"));
    m_box->setGeometry(boxPlace);
    setItemSize(itemSize);
}
