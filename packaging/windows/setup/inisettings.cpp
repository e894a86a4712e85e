#include "inisettings.h"

#include <algorithm>

namespace {

const char *const byteOrderMark = "\xef\xbb\xbf";
const char *const blanks = " \t\r";

std::string trimmed(const std::string &text)
{
    const std::string::size_type begin = text.find_first_not_of(blanks);
    if (begin == std::string::npos) {
        return {};
    }
    return text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

std::vector<std::string> linesOf(const std::string &text)
{
    std::vector<std::string> lines;
    std::string::size_type begin = text.rfind(byteOrderMark, 0) == 0 ? 3 : 0;
    while (begin < text.size()) {
        const std::string::size_type end = std::min(text.find('\n', begin), text.size());
        const std::string line = text.substr(begin, end - begin);
        lines.push_back(line.substr(0, line.find_last_not_of('\r') + 1));
        begin = end + 1;
    }
    return lines;
}

/// The name of the group that begins with this line; empty when none does.
std::string groupOf(const std::string &line)
{
    const std::string text = trimmed(line);
    const bool isGroup = text.size() > 2 && text.front() == '[' && text.back() == ']';
    return isGroup ? text.substr(1, text.size() - 2) : std::string();
}

/// The key that this line sets; empty when it sets none.
std::string keyOf(const std::string &line)
{
    const std::string text = trimmed(line);
    const std::string::size_type sign = text.find('=');
    if (text.empty() || text.front() == ';' || text.front() == '#' || sign == std::string::npos) {
        return {};
    }
    return trimmed(text.substr(0, sign));
}

void setIn(std::vector<std::string> &lines, const IniSetting &setting)
{
    const std::string written = setting.key + "=" + setting.value;
    std::string group;
    auto place = lines.end();
    for (auto line = lines.begin(); line != lines.end(); ++line) {
        const std::string begun = groupOf(*line);
        group = begun.empty() ? group : begun;
        if (group != setting.group) {
            continue;
        }
        if (keyOf(*line) == setting.key) {
            *line = written;
            return;
        }
        if (!trimmed(*line).empty()) {
            place = line + 1; // behind the group's last line that says something
        }
    }
    if (place == lines.end() && group != setting.group) {
        lines.push_back("[" + setting.group + "]");
        place = lines.end();
    }
    lines.insert(place, written);
}

} // namespace

std::string withSettings(const std::string &text, const std::vector<IniSetting> &settings)
{
    std::vector<std::string> lines = linesOf(text);
    for (const IniSetting &setting : settings) {
        setIn(lines, setting);
    }
    std::string result;
    for (const std::string &line : lines) {
        result += line + "\r\n";
    }
    return result;
}

std::vector<IniSetting> settingsOfGroup(const std::string &text, const std::string &group)
{
    std::vector<IniSetting> found;
    std::string current;
    for (const std::string &line : linesOf(text)) {
        const std::string begun = groupOf(line);
        current = begun.empty() ? current : begun;
        const std::string key = keyOf(line);
        if (current != group || key.empty() || !begun.empty()) {
            continue;
        }
        const IniSetting setting{group, key, trimmed(line.substr(line.find('=') + 1))};
        const auto same = std::find_if(found.begin(), found.end(), [&key](const IniSetting &other) {
            return other.key == key;
        });
        if (same == found.end()) {
            found.push_back(setting);
        } else {
            *same = setting;
        }
    }
    return found;
}
