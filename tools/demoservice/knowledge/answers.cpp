#include "tools/demoservice/knowledge/answers.h"

#include <algorithm>

namespace demo {

namespace {

using nlohmann::json;

constexpr std::int64_t mostSuggestions = 21; ///< no client shows more
constexpr std::int64_t mostRelated = 15;     ///< recommended for a question that was not understood

std::size_t atMost(std::int64_t wanted, std::int64_t limit)
{
    return static_cast<std::size_t>(std::min(wanted, limit));
}

json suggestion(const KnowledgeEntry &entry)
{
    return {{"id", entry.id}, {"question", entry.question}};
}

json recommendation(const KnowledgeEntry &entry)
{
    return {{"question", entry.question}, {"questionId", entry.id}};
}

json hotResult(const RequestBody &body, const Knowledge &knowledge)
{
    json list = json::array();
    for (const KnowledgeEntry &entry : knowledge.entries()) {
        if (static_cast<std::int64_t>(list.size()) >= body.recommendSize) {
            break;
        }
        if (entry.hot) {
            list.push_back(suggestion(entry));
        }
    }
    return list;
}

json associationResult(const RequestBody &body, const Knowledge &knowledge)
{
    json list = json::array();
    for (const KnowledgeEntry *entry :
         knowledge.containing(body.text, atMost(body.recommendSize, mostSuggestions))) {
        list.push_back(suggestion(*entry));
    }
    return list;
}

json askResult(const std::string &question, const std::string &reply, const json &recommends,
               bool hit)
{
    const char *const type = !hit               ? "NO_RESULT"
                           : recommends.empty() ? "QA_NORMAL_RESULT"
                                                : "MULTI_QA_RESULT";
    return {{"standardQuestion", question},
            {"reply", reply},
            {"recommends", recommends},
            {"resultType", type}};
}

json preparedResult(const KnowledgeEntry &entry, const RequestBody &body,
                    const Knowledge &knowledge)
{
    json recommends = json::array();
    for (const std::int64_t id : entry.recommends) {
        if (static_cast<std::int64_t>(recommends.size()) >= body.recommendSize) {
            break;
        }
        recommends.push_back(recommendation(*knowledge.byId(id)));
    }
    const bool hit = !entry.noHit;
    return askResult(hit ? entry.question : std::string(), entry.reply, recommends, hit);
}

json unknownResult(const RequestBody &body, const Knowledge &knowledge)
{
    json recommends = json::array();
    for (const KnowledgeEntry *entry :
         knowledge.related(body.rawQuery, atMost(body.recommendSize, mostRelated))) {
        recommends.push_back(recommendation(*entry));
    }
    // Not empty: a client takes an empty reply for a failure of the service.
    return askResult({}, "<p>未找到匹配的问题，请换一种说法试试。</p>", recommends, false);
}

} // namespace

json resultOf(Call call, const RequestBody &body, const Knowledge &knowledge)
{
    switch (call) {
    case Call::Hot:
        return hotResult(body, knowledge);
    case Call::Association:
        return associationResult(body, knowledge);
    case Call::Ask:
        break;
    }
    const KnowledgeEntry *entry = knowledge.byId(body.questionId);
    if (entry == nullptr) {
        entry = knowledge.match(body.rawQuery);
    }
    return entry == nullptr ? unknownResult(body, knowledge)
                            : preparedResult(*entry, body, knowledge);
}

std::string goodReply(const json &result)
{
    return json{{"errorCode", "0"}, {"errorMsg", "ok"}, {"result", result}}.dump();
}

std::string refusingReply(const std::string &errorCode, const std::string &message)
{
    const json reply = {{"errorCode", errorCode}, {"errorMsg", message}, {"result", nullptr}};
    return reply.dump(-1, ' ', false, json::error_handler_t::replace);
}

} // namespace demo
