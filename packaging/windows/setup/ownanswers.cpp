#include "ownanswers.h"

#include <windows.h>
#include <msi.h>

#include <cstdio>

namespace {

std::wstring asideFolder(const std::wstring &folder)
{
    return folder + L".own";
}

std::vector<std::wstring> answersIn(const std::wstring &folder)
{
    std::vector<std::wstring> names;
    WIN32_FIND_DATAW entry;
    const HANDLE search = FindFirstFileW((folder + L"\\*.txt").c_str(), &entry);
    if (search == INVALID_HANDLE_VALUE) {
        return names;
    }
    do {
        if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
            names.emplace_back(entry.cFileName);
        }
    } while (FindNextFileW(search, &entry) != 0);
    FindClose(search);
    return names;
}

/// Empty when the file cannot be read.
std::wstring sumOf(const std::wstring &file)
{
    MSIFILEHASHINFO hash = {};
    hash.dwFileHashInfoSize = sizeof(hash);
    if (MsiGetFileHashW(file.c_str(), 0, &hash) != ERROR_SUCCESS) {
        return {};
    }
    std::wstring sum;
    const auto *bytes = reinterpret_cast<const unsigned char *>(hash.dwData);
    for (unsigned i = 0; i < sizeof(hash.dwData); ++i) {
        wchar_t digits[3];
        swprintf(digits, 3, L"%02x", static_cast<unsigned>(bytes[i]));
        sum += digits;
    }
    return sum;
}

void note(std::vector<std::wstring> *done, std::wstring *failed, const std::wstring &name,
          BOOL worked)
{
    if (worked != 0) {
        done->push_back(name);
    } else if (failed->empty()) {
        *failed = name;
    }
}

} // namespace

AnswerSums answerSums(const std::wstring &text)
{
    AnswerSums sums;
    std::wstring::size_type begin = 0;
    while (begin < text.size()) {
        std::wstring::size_type end = text.find(L',', begin);
        end = end == std::wstring::npos ? text.size() : end;
        const std::wstring entry = text.substr(begin, end - begin);
        const std::wstring::size_type sign = entry.find(L'=');
        if (sign != std::wstring::npos) {
            sums[entry.substr(0, sign)] = entry.substr(sign + 1);
        }
        begin = end + 1;
    }
    return sums;
}

std::vector<std::wstring> setOwnAnswersAside(const std::wstring &folder, const AnswerSums &shipped,
                                             std::wstring *failed)
{
    std::vector<std::wstring> moved;
    const std::wstring aside = asideFolder(folder);
    for (const std::wstring &name : answersIn(folder)) {
        const std::wstring file = folder + L"\\" + name;
        const auto known = shipped.find(name);
        if (known != shipped.end() && known->second == sumOf(file)) {
            continue;
        }
        CreateDirectoryW(aside.c_str(), nullptr);
        note(&moved, failed, name,
             MoveFileExW(file.c_str(), (aside + L"\\" + name).c_str(), MOVEFILE_REPLACE_EXISTING));
    }
    return moved;
}

std::vector<std::wstring> putOwnAnswersBack(const std::wstring &folder, std::wstring *failed)
{
    std::vector<std::wstring> moved;
    const std::wstring aside = asideFolder(folder);
    for (const std::wstring &name : answersIn(aside)) {
        CreateDirectoryW(folder.c_str(), nullptr);
        note(&moved, failed, name,
             MoveFileExW((aside + L"\\" + name).c_str(), (folder + L"\\" + name).c_str(),
                         MOVEFILE_REPLACE_EXISTING));
    }
    RemoveDirectoryW(aside.c_str());
    return moved;
}

std::vector<std::wstring> copyAnswers(const std::wstring &source, const std::wstring &folder,
                                      std::wstring *failed)
{
    std::vector<std::wstring> copied;
    for (const std::wstring &name : answersIn(source)) {
        note(&copied, failed, name,
             CopyFileW((source + L"\\" + name).c_str(), (folder + L"\\" + name).c_str(), FALSE));
    }
    return copied;
}
