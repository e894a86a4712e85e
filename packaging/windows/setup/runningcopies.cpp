#include "runningcopies.h"

#include "app/startup/restartarguments.h"

#include <tlhelp32.h>
#include <userenv.h>
#include <winternl.h>
#include <wtsapi32.h>

#include <algorithm>
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

using Query = NTSTATUS(NTAPI *)(HANDLE, PROCESSINFOCLASS, PVOID, ULONG, PULONG);

Query processQuery()
{
    return reinterpret_cast<Query>(reinterpret_cast<void *>(
        GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "NtQueryInformationProcess")));
}

/// Copies an object of the other process; false when its memory cannot be read.
template <typename Object>
bool readObject(HANDLE process, const void *place, Object *object)
{
    return ReadProcessMemory(process, place, object, sizeof(Object), nullptr) != 0;
}

/// The command line from the process's own memory, for systems that cannot be asked for it.
std::wstring commandLineInMemory(DWORD number)
{
    const Handle process(OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, number));
    PROCESS_BASIC_INFORMATION basic = {};
    PEB block = {};
    RTL_USER_PROCESS_PARAMETERS parameters = {};
    if (!process.isOpen()
        || processQuery()(process.get(), ProcessBasicInformation, &basic, sizeof(basic), nullptr)
               < 0
        || !readObject(process.get(), basic.PebBaseAddress, &block)
        || !readObject(process.get(), block.ProcessParameters, &parameters)) {
        return {};
    }
    std::wstring text(parameters.CommandLine.Length / sizeof(wchar_t), L'\0');
    const bool worked = ReadProcessMemory(process.get(), parameters.CommandLine.Buffer, &text[0],
                                          parameters.CommandLine.Length, nullptr)
                     != 0;
    return worked ? text : std::wstring();
}

std::wstring commandLineOf(HANDLE process, DWORD number)
{
    std::vector<char> data(pathCharacters * 2 + sizeof(UNICODE_STRING));
    ULONG used = 0;
    if (processQuery()(process, commandLineInformation, data.data(),
                       static_cast<ULONG>(data.size()), &used)
        < 0) {
        return commandLineInMemory(number);
    }
    const auto *text = reinterpret_cast<const UNICODE_STRING *>(data.data());
    return std::wstring(text->Buffer, text->Length / sizeof(wchar_t));
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
        copy.arguments = restartArguments(commandLineOf(process.get(), copy.process));
        found.push_back(copy);
    }
    return found;
}

void askToClose(const std::vector<DWORD> &processes)
{
    EnumWindows(closeWindow, reinterpret_cast<LPARAM>(&processes));
}

std::size_t closeCopies(const std::vector<RunningCopy> &copies, const std::wstring &helper,
                        DWORD milliseconds)
{
    const ULONGLONG begun = GetTickCount64();
    ULONGLONG nextAsking = 0;
    for (ULONGLONG waited = 0; waited < milliseconds && anyRuns(copies);
         waited = GetTickCount64() - begun) {
        if (waited >= nextAsking) {
            ask(copies, helper);
            nextAsking = waited + askAgainMs;
        }
        Sleep(pollMs);
    }
    return static_cast<std::size_t>(
        std::count_if(copies.begin(), copies.end(),
                      [](const RunningCopy &copy) { return !isRunning(copy.process); }));
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
