#include "installation.h"

#include <msiquery.h>

#include <algorithm>

Installation::Installation(MSIHANDLE handle)
    : m_handle(handle)
{
}

std::wstring Installation::property(const wchar_t *name) const
{
    wchar_t nothing[] = L"";
    DWORD length = 0;
    if (MsiGetPropertyW(m_handle, name, nothing, &length) != ERROR_MORE_DATA) {
        return {};
    }
    std::wstring value(++length, L'\0');
    MsiGetPropertyW(m_handle, name, &value[0], &length);
    value.resize(length);
    return value;
}

std::vector<std::wstring> Installation::data(std::size_t count) const
{
    std::vector<std::wstring> parts(1);
    for (const wchar_t character : property(L"CustomActionData")) {
        if (character == L'|') {
            parts.emplace_back();
        } else {
            parts.back() += character;
        }
    }
    parts.resize(std::max(parts.size(), count));
    return parts;
}

void Installation::log(const std::wstring &text) const
{
    say(INSTALLMESSAGE_INFO, L"Miravel: " + text);
}

UINT Installation::fail(const std::wstring &text) const
{
    say(INSTALLMESSAGE_ERROR, text);
    return ERROR_INSTALL_FAILURE;
}

void Installation::say(INSTALLMESSAGE kind, const std::wstring &text) const
{
    const MSIHANDLE record = MsiCreateRecord(1);
    MsiRecordSetStringW(record, 0, L"[1]");
    MsiRecordSetStringW(record, 1, text.c_str());
    MsiProcessMessage(m_handle, kind, record);
    MsiCloseHandle(record);
}

std::wstring toWide(const std::string &utf8)
{
    const int size = static_cast<int>(utf8.size());
    const int length = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, nullptr, 0);
    std::wstring text(static_cast<std::size_t>(length), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, &text[0], length);
    return text;
}

std::string toUtf8(const std::wstring &text)
{
    const int size = static_cast<int>(text.size());
    const int length
        = WideCharToMultiByte(CP_UTF8, 0, text.data(), size, nullptr, 0, nullptr, nullptr);
    std::string utf8(static_cast<std::size_t>(length), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), size, &utf8[0], length, nullptr, nullptr);
    return utf8;
}
