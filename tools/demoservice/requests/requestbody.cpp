#include "tools/demoservice/requests/requestbody.h"

#include <array>
#include <limits>
#include <vector>

namespace demo {

namespace {

using nlohmann::json;

enum class Type { Text, Integer, Count };

struct Member
{
    const char *name;
    Type type;
};

const std::vector<Member> &membersOf(Call call)
{
    static const std::array<std::vector<Member>, callCount> all = {{
        {{"channelId", Type::Integer}, {"recommendSize", Type::Count}, {"robotId", Type::Text}},
        {{"channelId", Type::Integer},
         {"recommendSize", Type::Count},
         {"robotId", Type::Text},
         {"text", Type::Text}},
        {{"accountId", Type::Text},
         {"channelId", Type::Integer},
         {"currentDomain", Type::Text},
         {"originalQuestion", Type::Text},
         {"questionId", Type::Integer},
         {"rawQuery", Type::Text},
         {"recommendSize", Type::Count},
         {"robotId", Type::Text},
         {"source", Type::Text}},
    }};
    return all.at(static_cast<std::size_t>(call));
}

/// A whole number within 64 bits; larger ones would be read as negative.
bool isWholeNumber(const json &value)
{
    constexpr std::uint64_t highest = std::numeric_limits<std::int64_t>::max();
    return value.is_number_unsigned() ? value.get<std::uint64_t>() <= highest
                                      : value.is_number_integer();
}

bool fits(const json &value, Type type)
{
    switch (type) {
    case Type::Text:
        return value.is_string();
    case Type::Integer:
        return isWholeNumber(value);
    case Type::Count:
        break;
    }
    return isWholeNumber(value) && value.get<std::int64_t>() >= 0;
}

const char *typeName(Type type)
{
    switch (type) {
    case Type::Text:
        return "a string";
    case Type::Integer:
        return "a whole number";
    case Type::Count:
        break;
    }
    return "a whole number from 0 up";
}

bool hasTheMembers(const json &object, Call call, std::string &error)
{
    const std::vector<Member> &members = membersOf(call);
    for (const Member &member : members) {
        const auto found = object.find(member.name);
        if (found == object.end()) {
            error = std::string("the member \"") + member.name + "\" is missing";
            return false;
        }
        if (!fits(*found, member.type)) {
            error
                = std::string("the member \"") + member.name + "\" is not " + typeName(member.type);
            return false;
        }
    }
    if (object.size() != members.size()) {
        error = "the body has members that this call does not know";
        return false;
    }
    return true;
}

} // namespace

std::optional<RequestBody> parseRequestBody(Call call, const std::string &text, std::string &error)
{
    const json object = json::parse(text, nullptr, false);
    if (!object.is_object()) {
        error = "the body is not a JSON object";
        return std::nullopt;
    }
    if (!hasTheMembers(object, call, error)) {
        return std::nullopt;
    }
    RequestBody body;
    body.recommendSize = object.at("recommendSize").get<std::int64_t>();
    if (call == Call::Association) {
        body.text = object.at("text").get<std::string>();
    } else if (call == Call::Ask) {
        body.rawQuery = object.at("rawQuery").get<std::string>();
        body.questionId = object.at("questionId").get<std::int64_t>();
    }
    return body;
}

} // namespace demo
