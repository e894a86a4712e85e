#pragma once

#include "ui/answer/list/conversationitem.h"
#include "ui/answer/recommend/recommendbox.h"

/// Recommended questions in place of an answer.
class RecommendOnlyItem : public ConversationItem
{
    Q_OBJECT
    Q_DISABLE_COPY(RecommendOnlyItem)

public:
    RecommendOnlyItem(const QVector<ListedQuestion> &recommends, QLabel *measure, QWidget *parent);

    [[nodiscard]] RecommendBox *box() const { return m_box; }

protected:
    [[nodiscard]] int readCount() const override { return 1; }
    [[nodiscard]] QWidget *readPart(int number) const override;

private:
    RecommendBox *m_box;
};
