#pragma once

#include <string>
#include <vector>

/// One value of a settings file, as it stands there.
struct IniSetting
{
    std::string group;
    std::string key;
    std::string value;
};

/// The text of a settings file with these values in place of its own. A key or group that the text
/// does not have is added. Line ends become carriage return and line feed.
std::string withSettings(const std::string &text, const std::vector<IniSetting> &settings);

/// The values of one group in the order of the text; comments, other groups and lines without an
/// equals sign are left out. The last of two equal keys counts. A byte-order mark is passed over.
std::vector<IniSetting> settingsOfGroup(const std::string &text, const std::string &group);
