// What the package calls while it installs, upgrades and removes. Each action logs what it did.

#include "inisettings.h"
#include "installation.h"
#include "ownanswers.h"
#include "rolloutvalues.h"
#include "runningcopies.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr DWORD patienceMs = 10000;
// Only administrators may write there; what is in it is started by startAgain.
const wchar_t *const closedKey = L"Software\\Miravel\\Closed";

HINSTANCE thisLibrary = nullptr;

std::wstring thisFile()
{
    std::wstring path(MAX_PATH, L'\0');
    path.resize(GetModuleFileNameW(thisLibrary, &path[0], MAX_PATH));
    return path;
}

/// False when the file cannot be read.
bool readFile(const std::wstring &path, std::string *text)
{
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return false;
    }
    char data[4096];
    DWORD read = 0;
    BOOL worked = TRUE;
    while ((worked = ReadFile(file, data, sizeof(data), &read, nullptr)) != 0 && read > 0) {
        text->append(data, read);
    }
    CloseHandle(file);
    return worked != 0;
}

/// False when there is such a file already or it cannot be written.
bool writeNewFile(const std::wstring &path, const std::string &text)
{
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return false;
    }
    DWORD written = 0;
    const bool worked
        = WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr) != 0
       && written == text.size();
    CloseHandle(file);
    if (!worked) {
        DeleteFileW(path.c_str());
    }
    return worked;
}

void remember(const std::vector<RunningCopy> &closed)
{
    HKEY key = nullptr;
    if (closed.empty()
        || RegCreateKeyExW(HKEY_LOCAL_MACHINE, closedKey, 0, nullptr, 0, KEY_WRITE, nullptr, &key,
                           nullptr)
               != ERROR_SUCCESS) {
        return;
    }
    for (const RunningCopy &copy : closed) {
        const auto bytes = static_cast<DWORD>((copy.arguments.size() + 1) * sizeof(wchar_t));
        RegSetValueExW(key, std::to_wstring(copy.session).c_str(), 0, REG_SZ,
                       reinterpret_cast<const BYTE *>(copy.arguments.c_str()), bytes);
    }
    RegCloseKey(key);
}

/// What was remembered, one copy for each session; it is forgotten then.
std::vector<RunningCopy> remembered()
{
    std::vector<RunningCopy> copies;
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, closedKey, 0, KEY_READ, &key) != ERROR_SUCCESS) {
        return copies;
    }
    wchar_t name[16];
    wchar_t arguments[4096];
    for (DWORD index = 0;; ++index) {
        DWORD nameLength = 16;
        DWORD bytes = sizeof(arguments) - sizeof(wchar_t);
        if (RegEnumValueW(key, index, name, &nameLength, nullptr, nullptr,
                          reinterpret_cast<BYTE *>(arguments), &bytes)
            != ERROR_SUCCESS) {
            break;
        }
        arguments[bytes / sizeof(wchar_t)] = L'\0';
        RunningCopy copy;
        copy.session = static_cast<DWORD>(std::wcstoul(name, nullptr, 10));
        copy.arguments = arguments;
        copies.push_back(copy);
    }
    RegCloseKey(key);
    RegDeleteKeyW(HKEY_LOCAL_MACHINE, closedKey);
    return copies;
}

/// The values for a new Miravel.ini, without what was not given.
std::vector<IniSetting> givenSettings(const std::vector<std::wstring> &values)
{
    const std::string mode = toUtf8(values[3]);
    const IniSetting all[] = {{"Log", "level", toUtf8(values[0])},
                              {"IpAndPort", "mserverip", toUtf8(values[1])},
                              {"IpAndPort", "mserverhttpsport", toUtf8(values[2])},
                              {"ihttpInfo", "iHttpMode",
                               mode.empty()     ? ""
                               : mode == "http" ? "0"
                                                : "1"},
                              {"SysguardPort", "port1", toUtf8(values[4])}};
    std::vector<IniSetting> given;
    std::copy_if(std::begin(all), std::end(all), std::back_inserter(given),
                 [](const IniSetting &setting) { return !setting.value.empty(); });
    return given;
}

std::wstring counted(std::size_t count, const wchar_t *what)
{
    return std::to_wstring(count) + what;
}

} // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE library, DWORD /*reason*/, LPVOID /*reserved*/)
{
    thisLibrary = library;
    return TRUE;
}

/// Immediate: refuses properties that cannot be used.
extern "C" __declspec(dllexport) UINT __stdcall checkProperties(MSIHANDLE handle)
{
    const Installation installation(handle);
    const auto value = [&installation](const wchar_t *name) {
        return toUtf8(installation.property(name));
    };
    RolloutValues values;
    values.layout = value(L"LAYOUT");
    values.clientFolder = value(L"CLIENTFOLDER");
    values.logLevel = value(L"LOGLEVEL");
    values.serviceAddress = value(L"SERVICEADDRESS");
    values.servicePort = value(L"SERVICEPORT");
    values.serviceMode = value(L"SERVICEMODE");
    values.guardPort = value(L"GUARDPORT");
    const std::vector<std::string> found = complaints(values);
    std::string text;
    for (const std::string &complaint : found) {
        text += complaint + "\r\n";
    }
    return found.empty() ? UINT(ERROR_SUCCESS) : installation.fail(toWide(text));
}

/// Deferred, data: program | "again" when what is closed is to be started again.
extern "C" __declspec(dllexport) UINT __stdcall closeRunning(MSIHANDLE handle)
{
    const Installation installation(handle);
    const std::vector<std::wstring> data = installation.data(2);
    const std::vector<RunningCopy> copies = runningCopies(data[0]);
    if (copies.empty()) {
        return ERROR_SUCCESS;
    }
    installation.log(counted(copies.size(), L" running, asked to close"));
    const ULONGLONG begun = GetTickCount64();
    const std::vector<RunningCopy> closed = closeCopies(copies, thisFile(), patienceMs);
    installation.log(counted(closed.size(), L" closed after ")
                     + std::to_wstring(GetTickCount64() - begun) + L" ms");
    if (closed.size() < copies.size()) {
        installation.log(L"files in use are replaced when the machine starts the next time");
    }
    if (data[1] == L"again") {
        remember(closed);
    }
    return ERROR_SUCCESS;
}

/// Deferred, data: program.
extern "C" __declspec(dllexport) UINT __stdcall startAgain(MSIHANDLE handle)
{
    const Installation installation(handle);
    const std::wstring program = installation.data(1)[0];
    for (const RunningCopy &copy : remembered()) {
        const bool started = startInSession(program, copy);
        installation.log(started ? L"started again: " + copy.arguments
                                 : L"could not be started again: " + copy.arguments);
    }
    return ERROR_SUCCESS;
}

/// Deferred, data: target | sample | log level | address | port | mode | guard port | credentials.
extern "C" __declspec(dllexport) UINT __stdcall configure(MSIHANDLE handle)
{
    const Installation installation(handle);
    const std::vector<std::wstring> data = installation.data(8);
    if (GetFileAttributesW(data[0].c_str()) != INVALID_FILE_ATTRIBUTES) {
        installation.log(L"left as it is: " + data[0]);
        return ERROR_SUCCESS;
    }
    std::string text;
    if (!readFile(data[1], &text)) {
        return installation.fail(L"无法读取 " + data[1] + L"。Cannot read it.");
    }
    std::vector<IniSetting> settings = givenSettings({data.begin() + 2, data.begin() + 7});
    if (!data[7].empty()) {
        std::string credentials;
        if (!readFile(data[7], &credentials)) {
            return installation.fail(L"无法读取 CREDENTIALSFILE：" + data[7]
                                     + L"。CREDENTIALSFILE cannot be read.");
        }
        const std::vector<IniSetting> found = settingsOfGroup(credentials, "Authorization");
        if (found.empty()) {
            return installation.fail(L"CREDENTIALSFILE 中没有 [Authorization]：" + data[7]
                                     + L"。There is no [Authorization] in CREDENTIALSFILE.");
        }
        settings.insert(settings.end(), found.begin(), found.end());
    }
    if (!writeNewFile(data[0], withSettings(text, settings))) {
        return installation.fail(L"无法写入 " + data[0] + L"。Cannot write it.");
    }
    installation.log(counted(settings.size(), L" values given for the new ") + data[0]);
    return ERROR_SUCCESS;
}

/// Deferred, data: LocalQA folder | sums of the shipped answers.
extern "C" __declspec(dllexport) UINT __stdcall setAnswersAside(MSIHANDLE handle)
{
    const Installation installation(handle);
    const std::vector<std::wstring> data = installation.data(2);
    std::wstring failed;
    const std::vector<std::wstring> moved
        = setOwnAnswersAside(data[0], answerSums(data[1]), &failed);
    installation.log(counted(moved.size(), L" own answers set aside"));
    return failed.empty() ? UINT(ERROR_SUCCESS)
                          : installation.fail(L"无法移动 " + failed + L"。It cannot be moved.");
}

/// Deferred and on rollback, data: LocalQA folder | folder to copy from.
extern "C" __declspec(dllexport) UINT __stdcall putAnswersBack(MSIHANDLE handle)
{
    const Installation installation(handle);
    const std::vector<std::wstring> data = installation.data(2);
    std::wstring failed;
    const std::vector<std::wstring> moved = putOwnAnswersBack(data[0], &failed);
    installation.log(counted(moved.size(), L" own answers put back"));
    if (!data[1].empty()) {
        const std::vector<std::wstring> copied = copyAnswers(data[1], data[0], &failed);
        if (copied.empty() && failed.empty()) {
            return installation.fail(L"LOCALQAFOLDER 中没有 .txt 文件：" + data[1]
                                     + L"。There is no .txt file in LOCALQAFOLDER.");
        }
        installation.log(counted(copied.size(), L" answers copied from ") + data[1]);
    }
    return failed.empty() ? UINT(ERROR_SUCCESS)
                          : installation.fail(L"无法写入 " + failed + L"。It cannot be written.");
}

/// Run by rundll32 in another session: the arguments are process numbers.
extern "C" __declspec(dllexport) void CALLBACK
    askInSessionW(HWND /*window*/, HINSTANCE /*library*/, LPWSTR arguments, int /*show*/)
{
    std::vector<DWORD> processes;
    wchar_t *end = arguments;
    for (DWORD process = std::wcstoul(arguments, &end, 10); process != 0;
         process = std::wcstoul(end, &end, 10)) {
        processes.push_back(process);
    }
    askToClose(processes);
}
