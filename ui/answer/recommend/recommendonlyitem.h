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

    /// The box; null while the entry sleeps.
    [[nodiscard]] RecommendBox *box() const { return m_box; }

    /// Wakes the entry and shows the next page of its box.
    void showNextPage();

signals:
    void recommendClicked(const QString &question, qint64 questionId);
    void nextPageRequested();

protected:
    [[nodiscard]] bool canSleep() const override { return true; }
    void forget() override;
    void rebuild() override;
    [[nodiscard]] int readCount() const override { return 1; }
    [[nodiscard]] QWidget *readPart(int number) const override;

private:
    QVector<ListedQuestion> m_recommends;
    QLabel *m_measure;
    RecommendBox::Place m_place; ///< of the box while the entry sleeps
    RecommendBox *m_box = nullptr;
};
