#pragma once

#include <windows.h>
#include <msi.h>

#include <string>
#include <vector>

/// The installation that an action belongs to.
class Installation
{
public:
    explicit Installation(MSIHANDLE handle);

    /// A property's value; empty when it is not set. Deferred actions only see "CustomActionData".
    std::wstring property(const wchar_t *name) const;

    /// The parts of "CustomActionData", which are parted by bars; at least \a count, then empty
    /// ones.
    std::vector<std::wstring> data(std::size_t count) const;

    /// Writes a line to the installation's log.
    void log(const std::wstring &text) const;

    /// Shows and logs why the installation cannot go on; gives what the action then returns.
    UINT fail(const std::wstring &text) const;

private:
    void say(INSTALLMESSAGE kind, const std::wstring &text) const;

    MSIHANDLE m_handle;
};

std::wstring toWide(const std::string &utf8);
std::string toUtf8(const std::wstring &text);
