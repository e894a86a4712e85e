#include "runningcopies.h"

#include "app/startup/restartarguments.h"

#include <tlhelp32.h>
#include <userenv.h>
#include <winternl.h>
#include <wtsapi32.h>

#include <algorithm>
#include <iterator>
#include <set>

namespace {

constexpr DWORD askAgainMs = 1000;
constexpr DWORD pollMs = 50;
constexpr DWORD pathCharacters = 32768;
// Since Windows 8.1; not in this compiler's headers.
constexpr auto commandLineInformation = static_cast<PROCESSINFOCLASS>(60);

/// Closes what it holds.
class Handle
{
public:
    explicit Handle(HANDLE handle)
        : m_handle(handle)
    {
    }
    ~Handle()
    {
        if (isOpen()) {
            CloseHandle(m_handle);
        }
    }
    Handle(const Handle &) = delete;
    Handle &operator=(const Handle &) = delete;
    HANDLE get() const { return m_handle; }
    bool isOpen() const { return m_handle != nullptr && m_handle != INVALID_HANDLE_VALUE; }

private:
    HANDLE m_handle;
};

DWORD ownSession()
{
    DWORD session = 0;
    ProcessIdToSessionId(GetCurrentProcessId(), &session);
    return session;
}

std::wstring fileOf(HANDLE process)
{
    std::wstring path(pathCharacters, L'\0');
    auto length = static_cast<DWORD>(path.size());
    return QueryFullProcessImageNameW(process, 0, &path[0], &length) != 0 ? path.substr(0, length)
                                                                          : std::wstring();
}

std::wstring argumentsOf(HANDLE process)
{
    using Query = NTSTATUS(NTAPI *)(HANDLE, PROCESSINFOCLASS, PVOID, ULONG, PULONG);
    const auto query = reinterpret_cast<Query>(reinterpret_cast<void *>(
        GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "NtQueryInformationProcess")));
    std::vector<char> data(pathCharacters * 2 + sizeof(UNICODE_STRING));
    ULONG used = 0;
    if (query == nullptr
        || query(process, commandLineInformation, data.data(), static_cast<ULONG>(data.size()),
                 &used)
               < 0) {
        return {};
    }
    const auto *text = reinterpret_cast<const UNICODE_STRING *>(data.data());
    return restartArguments(std::wstring(text->Buffer, text->Length / sizeof(wchar_t)));
}

bool isRunning(DWORD process)
{
    const Handle handle(OpenProcess(SYNCHRONIZE, FALSE, process));
    return handle.isOpen() && WaitForSingleObject(handle.get(), 0) == WAIT_TIMEOUT;
}

BOOL CALLBACK closeWindow(HWND window, LPARAM processes)
{
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    const auto *wanted = reinterpret_cast<const std::vector<DWORD> *>(processes);
    if (IsWindowVisible(window) != 0
        && std::find(wanted->begin(), wanted->end(), process) != wanted->end()) {
        PostMessageW(window, WM_CLOSE, 0, 0);
    }
    return TRUE;
}

/// Starts \a commandLine in the session of \a token.
bool startWithToken(HANDLE token, std::wstring commandLine, const wchar_t *folder)
{
    void *environment = nullptr;
    CreateEnvironmentBlock(&environment, token, FALSE);
    wchar_t desktop[] = L"winsta0\\default";
    STARTUPINFOW start = {};
    start.cb = sizeof(start);
    start.lpDesktop = desktop;
    PROCESS_INFORMATION started = {};
    const bool done
        = CreateProcessAsUserW(token, nullptr, &commandLine[0], nullptr, nullptr, FALSE,
                               CREATE_UNICODE_ENVIRONMENT, environment, folder, &start, &started)
       != 0;
    const Handle process(started.hProcess);
    const Handle thread(started.hThread);
    if (environment != nullptr) {
        DestroyEnvironmentBlock(environment);
    }
    return done;
}

/// Window messages do not leave their session, so the asking is done by a process in it.
void askInOtherSession(DWORD session, const std::wstring &helper,
                       const std::vector<DWORD> &processes)
{
    HANDLE own = nullptr;
    HANDLE copied = nullptr;
    OpenProcessToken(GetCurrentProcess(), TOKEN_DUPLICATE, &own);
    const Handle ownToken(own);
    if (!ownToken.isOpen()
        || DuplicateTokenEx(own, MAXIMUM_ALLOWED, nullptr, SecurityImpersonation, TokenPrimary,
                            &copied)
               == 0) {
        return;
    }
    const Handle token(copied);
    if (SetTokenInformation(copied, TokenSessionId, &session, sizeof(session)) == 0) {
        return; // only the system itself may
    }
    std::wstring system(MAX_PATH, L'\0');
    system.resize(GetSystemDirectoryW(&system[0], MAX_PATH));
    std::wstring command = L"\"" + system + L"\\rundll32.exe\" \"" + helper + L"\",askInSession";
    for (const DWORD process : processes) {
        command += L" " + std::to_wstring(process);
    }
    startWithToken(copied, command, nullptr);
}

std::set<DWORD> sessionsOf(const std::vector<RunningCopy> &copies)
{
    std::set<DWORD> sessions;
    for (const RunningCopy &copy : copies) {
        sessions.insert(copy.session);
    }
    return sessions;
}

void ask(const std::vector<RunningCopy> &copies, const std::wstring &helper)
{
    for (const DWORD session : sessionsOf(copies)) {
        std::vector<DWORD> processes;
        for (const RunningCopy &copy : copies) {
            if (copy.session == session && isRunning(copy.process)) {
                processes.push_back(copy.process);
            }
        }
        if (processes.empty()) {
            continue;
        }
        if (session == ownSession()) {
            askToClose(processes);
        } else {
            askInOtherSession(session, helper, processes);
        }
    }
}

bool anyRuns(const std::vector<RunningCopy> &copies)
{
    return std::any_of(copies.begin(), copies.end(),
                       [](const RunningCopy &copy) { return isRunning(copy.process); });
}

} // namespace

std::vector<RunningCopy> runningCopies(const std::wstring &program)
{
    const std::wstring name = program.substr(program.find_last_of(L'\\') + 1);
    std::vector<RunningCopy> found;
    const Handle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    PROCESSENTRY32W entry = {};
    entry.dwSize = sizeof(entry);
    for (BOOL more = Process32FirstW(snapshot.get(), &entry); more != 0;
         more = Process32NextW(snapshot.get(), &entry)) {
        if (lstrcmpiW(entry.szExeFile, name.c_str()) != 0) {
            continue;
        }
        const Handle process(
            OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, entry.th32ProcessID));
        if (lstrcmpiW(fileOf(process.get()).c_str(), program.c_str()) != 0) {
            continue;
        }
        RunningCopy copy;
        copy.process = entry.th32ProcessID;
        ProcessIdToSessionId(copy.process, &copy.session);
        copy.arguments = argumentsOf(process.get());
        found.push_back(copy);
    }
    return found;
}

void askToClose(const std::vector<DWORD> &processes)
{
    EnumWindows(closeWindow, reinterpret_cast<LPARAM>(&processes));
}

std::vector<RunningCopy> closeCopies(const std::vector<RunningCopy> &copies,
                                     const std::wstring &helper, DWORD milliseconds)
{
    for (DWORD waited = 0; waited < milliseconds && anyRuns(copies); waited += pollMs) {
        if (waited % askAgainMs == 0) {
            ask(copies, helper);
        }
        Sleep(pollMs);
    }
    std::vector<RunningCopy> closed;
    std::copy_if(copies.begin(), copies.end(), std::back_inserter(closed),
                 [](const RunningCopy &copy) { return !isRunning(copy.process); });
    return closed;
}

bool startInSession(const std::wstring &program, const RunningCopy &copy)
{
    const std::wstring folder = program.substr(0, program.find_last_of(L'\\'));
    std::wstring command = L"\"" + program + L"\" " + copy.arguments;
    if (copy.session != ownSession()) {
        HANDLE user = nullptr;
        if (WTSQueryUserToken(copy.session, &user) == 0) {
            return false; // logged off meanwhile
        }
        const Handle token(user);
        return startWithToken(user, command, folder.c_str());
    }
    STARTUPINFOW start = {};
    start.cb = sizeof(start);
    PROCESS_INFORMATION started = {};
    const bool done = CreateProcessW(program.c_str(), &command[0], nullptr, nullptr, FALSE, 0,
                                     nullptr, folder.c_str(), &start, &started)
                   != 0;
    const Handle process(started.hProcess);
    const Handle thread(started.hThread);
    return done;
}
