// What the package calls while it installs, upgrades and removes. Each action logs what it did.

#include "inisettings.h"
#include "installation.h"
#include "ownanswers.h"
#include "rolloutvalues.h"
#include "runningcopies.h"

#include <msiquery.h>

#include <algorithm>
#include <iterator>
#include <set>

namespace {

constexpr DWORD patienceMs = 10000;
const wchar_t *const programName = L"Miravel.exe";

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

bool runsIn(DWORD session, const std::wstring &program)
{
    const std::vector<RunningCopy> copies = runningCopies(program);
    return std::any_of(copies.begin(), copies.end(),
                       [session](const RunningCopy &copy) { return copy.session == session; });
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
    values.translation = value(L"TRANSLATION");
    const std::vector<std::string> found = complaints(values);
    std::string text;
    for (const std::string &complaint : found) {
        text += complaint + "\r\n";
    }
    return found.empty() ? UINT(ERROR_SUCCESS) : installation.fail(toWide(text));
}

/// Immediate: sets "RunningCopies" to the copies of this installation and of the one before, as
/// session=arguments, parted by bars. By the time of startAgain they have closed.
extern "C" __declspec(dllexport) UINT __stdcall noteRunning(MSIHANDLE handle)
{
    const Installation installation(handle);
    std::set<std::wstring> programs;
    for (const wchar_t *folder : {L"INSTALLFOLDER", L"OLDINSTALLFOLDER"}) {
        programs.insert(installation.property(folder) + programName);
    }
    std::wstring noted;
    for (const std::wstring &program : programs) {
        for (const RunningCopy &copy : runningCopies(program)) {
            if (copy.arguments.find(L'|') == std::wstring::npos) {
                noted += L"|" + std::to_wstring(copy.session) + L"=" + copy.arguments;
            }
        }
    }
    MsiSetPropertyW(handle, L"RunningCopies", noted.c_str());
    return ERROR_SUCCESS;
}

/// Deferred, data: program.
extern "C" __declspec(dllexport) UINT __stdcall closeRunning(MSIHANDLE handle)
{
    const Installation installation(handle);
    const std::vector<RunningCopy> copies = runningCopies(installation.data(1)[0]);
    if (copies.empty()) {
        return ERROR_SUCCESS;
    }
    installation.log(counted(copies.size(), L" running, asked to close"));
    const ULONGLONG begun = GetTickCount64();
    const std::size_t closed = closeCopies(copies, thisFile(), patienceMs);
    installation.log(counted(closed, L" closed after ") + std::to_wstring(GetTickCount64() - begun)
                     + L" ms");
    if (closed < copies.size()) {
        installation.log(L"files in use are replaced when the machine starts the next time");
    }
    return ERROR_SUCCESS;
}

/// Deferred and on rollback, data: program | what noteRunning has noted. Leaves sessions alone in
/// which a copy runs.
extern "C" __declspec(dllexport) UINT __stdcall startAgain(MSIHANDLE handle)
{
    const Installation installation(handle);
    std::vector<std::wstring> noted = installation.data(1);
    const std::wstring program = noted[0];
    for (std::size_t i = 1; i < noted.size(); ++i) {
        const std::wstring::size_type sign = noted[i].find(L'=');
        RunningCopy copy;
        copy.session = static_cast<DWORD>(std::wcstoul(noted[i].c_str(), nullptr, 10));
        copy.arguments = sign == std::wstring::npos ? std::wstring() : noted[i].substr(sign + 1);
        if (sign == std::wstring::npos || runsIn(copy.session, program)) {
            continue;
        }
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

/// Deferred, data: gif folder. Moving pictures are only kept for a while.
extern "C" __declspec(dllexport) UINT __stdcall dropPictures(MSIHANDLE handle)
{
    const std::wstring folder = Installation(handle).data(1)[0];
    WIN32_FIND_DATAW entry;
    const HANDLE search = FindFirstFileW((folder + L"*.gif").c_str(), &entry);
    if (search == INVALID_HANDLE_VALUE) {
        return ERROR_SUCCESS;
    }
    do {
        DeleteFileW((folder + entry.cFileName).c_str());
    } while (FindNextFileW(search, &entry) != 0);
    FindClose(search);
    return ERROR_SUCCESS;
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
