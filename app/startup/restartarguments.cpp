#include "app/startup/restartarguments.h"

std::wstring restartArguments(const std::wstring &commandLine)
{
    const bool quoted = !commandLine.empty() && commandLine.front() == L'"';
    const std::wstring::size_type end
        = quoted ? commandLine.find(L'"', 1) : commandLine.find_first_of(L" \t");
    if (end == std::wstring::npos) {
        return {};
    }
    const std::wstring::size_type begin = commandLine.find_first_not_of(L" \t", end + 1);
    return begin == std::wstring::npos ? std::wstring() : commandLine.substr(begin);
}
