#pragma once

#include "ui/answer/bubble/answeritem.h"
#include "ui/answer/bubble/questionbubble.h"
#include "ui/answer/list/conversationlist.h"
#include "ui/answer/qaregion.h"

#include <QList>
#include <QScrollBar>
#include <QString>

#include <memory>

/// A conversation region of 647 x 490 px, of which entries out of view sleep.
class SleepTest : public QObject
{
    Q_OBJECT

protected slots:
    void initTestCase();
    void init();
    void cleanup();

protected:
    static constexpr int many = 35; ///< exchanges, more than are near a view

    /// The text of the question with that number.
    [[nodiscard]] static QString question(int number);

    /// Adds questions with answers of one paragraph, and lets sleep what is then far.
    void addExchanges(int count);
    static void letSleep();
    [[nodiscard]] QList<QuestionBubble *> questions() const;
    [[nodiscard]] QList<AnswerItem *> answers() const;
    [[nodiscard]] QScrollBar *bar() const { return m_list->verticalScrollBar(); }

    std::unique_ptr<QARegion> m_region;
    ConversationList *m_list = nullptr;
};
