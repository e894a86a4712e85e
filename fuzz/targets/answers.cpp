#include "app/base/apppaths.h"
#include "fuzz/support/check.h"
#include "fuzz/support/scratchfolder.h"
#include "fuzz/support/target.h"
#include "resources/resources.h"
#include "service/reply/answer.h"
#include "service/reply/replyreading.h"
#include "ui/answer/bubble/answeritem.h"
#include "ui/answer/content/answercontent.h"
#include "ui/answer/qaregion.h"
#include "ui/answer/recommend/recommendbox.h"
#include "ui/mainwindow/hotquestions/hotpaging.h"
#include "ui/mainwindow/hotquestions/hotquestionscolumn.h"
#include "ui/mainwindow/suggestions/suggestionpopup.h"

#include <QCoreApplication>
#include <QJsonObject>
#include <QLabel>
#include <QListWidget>

namespace {

constexpr int foldedHeight = 151; ///< px of content, from which on an answer is folded

/// What the program has before a reply comes.
struct Surroundings
{
    Surroundings()
    {
        initResources();
        initAppPaths(QString());
    }

    ScratchFolder folder;
};

void showAs(AnswerKind kind, const Answer &answer, const QJsonValue &recommends, QARegion &region)
{
    const QString question = QStringLiteral("问题");
    switch (kind) {
    case AnswerKind::Plain:
        region.QA_NORMAL_RESULT(question, answer.title, answer.text);
        break;
    case AnswerKind::WithRecommendations:
        region.MULTI_QA_RESULT(question, answer.title, answer.text, recommends);
        break;
    case AnswerKind::NoMatch:
        region.NO_RESULT(answer.recommendations.size(), recommends, question);
        break;
    case AnswerKind::Unknown:
        break;
    }
    region.checkEmptyReply(answer.text);
}

void checkAnswer(AnswerItem &item, QARegion &region)
{
    const AnswerContent *content = item.content();
    check(content->count() == content->paragraphs().size() + content->pictureRows().size(),
          "a row is a paragraph or a picture");
    int height = 0;
    for (int row = 0; row < content->count(); ++row) {
        height += content->itemWidget(content->item(row))->height();
    }
    check(height == content->contentHeight() || height > QWIDGETSIZE_MAX - 2000,
          "an answer is as high as its rows");
    const bool folded = content->contentHeight() >= foldedHeight;
    check(!folded || item.height() == (item.box() == nullptr ? 230 : 485),
          "a high answer is folded");
    region.FoldToOpen_answer(0);
    check(!folded || item.height() > content->contentHeight(), "it can be opened");
}

void checkRegion(const Answer &answer, QARegion &region)
{
    const auto items = region.findChildren<AnswerItem *>();
    const bool answered
        = answer.kind == AnswerKind::Plain || answer.kind == AnswerKind::WithRecommendations;
    check(items.size() == (answered ? 1 : 0), "an answer is shown where there is one");
    for (AnswerItem *item : items) {
        checkAnswer(*item, region);
    }
    for (RecommendBox *box : region.findChildren<RecommendBox *>()) {
        box->showNextPage();
        box->showNextPage();
    }
    region.grab();
}

void checkLists(const QVector<ListedQuestion> &questions)
{
    HotQuestionsColumn column(nullptr);
    column.showServiceQuestions(questions);
    check(column.findChild<QListWidget *>()->count() == hotRowsPerPage, "a page has all its rows");
    if (!questions.isEmpty()) {
        QWidget parent;
        const SuggestionPopup popup(questions, questions.last().text.left(3), &parent);
        check(popup.findChild<QListWidget *>()->count()
                  == qMin(questions.size(), SuggestionPopup::capacity),
              "each suggestion has a row");
    }
}

} // namespace

/// The bytes of a service's reply, up to bubbles, hot questions and suggestions.
void runTarget(const QByteArray &input)
{
    static const Surroundings surroundings;
    const ParsedReply reply = parseReply(input);
    const Answer answer = readAnswer(reply.document);
    if (answer.kind != AnswerKind::Unknown) {
        QARegion region;
        const QJsonValue recommends
            = resultOf(reply.document).toObject().value(QLatin1String("recommends"));
        showAs(answer.kind, answer, recommends, region);
        checkRegion(answer, region);
    }
    const QJsonArray list = resultArray(reply.document);
    if (!list.isEmpty()) {
        checkLists(readListedQuestions(list));
    }
    QCoreApplication::processEvents();
}
