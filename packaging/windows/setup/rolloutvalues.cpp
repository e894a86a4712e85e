#include "rolloutvalues.h"

#include <algorithm>
#include <initializer_list>

namespace {

bool isOneOf(const std::string &value, std::initializer_list<const char *> allowed)
{
    return std::any_of(allowed.begin(), allowed.end(),
                       [&value](const char *one) { return value == one; });
}

bool isPort(const std::string &value)
{
    const bool digits
        = std::all_of(value.begin(), value.end(), [](char c) { return c >= '0' && c <= '9'; });
    return digits && value.size() <= 5 && std::stoi(value) >= 1 && std::stoi(value) <= 65535;
}

/// Neither a separator of settings files nor of what is handed to the actions.
bool isAddress(const std::string &value)
{
    return std::all_of(value.begin(), value.end(), [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z')
            || c == '.' || c == '-' || c == '_' || c == ':';
    });
}

} // namespace

std::vector<std::string> complaints(const RolloutValues &values)
{
    std::vector<std::string> found;
    const auto expect = [&found](bool right, const char *complaint) {
        if (!right) {
            found.emplace_back(complaint);
        }
    };
    const auto given = [](const std::string &value) {
        return !value.empty();
    };
    expect(isOneOf(values.layout, {"standalone", "client"}),
           u8"LAYOUT 只能是 standalone 或 client。LAYOUT must be standalone or client.");
    expect(
        values.layout != "client" || given(values.clientFolder),
        u8"LAYOUT=client 时必须给出 CLIENTFOLDER。LAYOUT=client needs CLIENTFOLDER, the folder of "
        u8"the virtual-desktop client.");
    expect(
        !given(values.logLevel)
            || isOneOf(values.logLevel, {"DEBUG", "INFO", "WARN", "ERROR", "FATAL"}),
        u8"LOGLEVEL 只能是 DEBUG、INFO、WARN、ERROR 或 FATAL。LOGLEVEL must be DEBUG, INFO, WARN, "
        u8"ERROR or FATAL.");
    expect(
        isAddress(values.serviceAddress),
        u8"SERVICEADDRESS 必须是主机名或 IP 地址。SERVICEADDRESS must be a host name or an address.");
    expect(!given(values.servicePort) || isPort(values.servicePort),
           u8"SERVICEPORT 必须是 1 到 65535 的端口号。SERVICEPORT must be a port from 1 to 65535.");
    expect(!given(values.serviceMode) || isOneOf(values.serviceMode, {"http", "https"}),
           u8"SERVICEMODE 只能是 http 或 https。SERVICEMODE must be http or https.");
    expect(!given(values.guardPort) || isPort(values.guardPort),
           u8"GUARDPORT 必须是 1 到 65535 的端口号。GUARDPORT must be a port from 1 to 65535.");
    expect(!given(values.translation) || isOneOf(values.translation, {"en", "zh"}),
           u8"TRANSLATION 只能是 en 或 zh。TRANSLATION must be en or zh.");
    return found;
}
