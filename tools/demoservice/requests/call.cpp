#include "tools/demoservice/requests/call.h"

#include <array>

namespace demo {

namespace {
constexpr std::array<const char *, callCount> names = {"hot", "association", "ask"};
}

const char *callName(Call call)
{
    return names.at(static_cast<std::size_t>(call));
}

std::optional<Call> callByName(const std::string &name)
{
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (name == names.at(i)) {
            return static_cast<Call>(i);
        }
    }
    return std::nullopt;
}

} // namespace demo
