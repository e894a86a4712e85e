// What other programs and the system do to the windows of a running Miravel.exe, for tests:
//
// windowhand WHAT [FILE]    waits until FILE is there, when one is named, does WHAT and prints a
// line
//
// close      asks the main window to close and waits for the program's end: "exit=0 ms=123"
// ask-end    asks whether the session may end: "allowed" or "refused"
// keep-on    tells that it does not end, because another program has refused
// end        asks and then tells that the session ends, waits for the program's end as above
// minimise   minimises the main window
// process    "process" and the number of the program's process
// stall      asks the main window again and again, until FILE is there, to answer; "stall=123", the
//            longest answer in ms
// state      "normal" or "minimised", then "front" when it is the window in front
//
// Exit status 0, 1 when there is no such program or window, 2 for wrong arguments.

#include <windows.h>
#include <tlhelp32.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

namespace {

constexpr DWORD mostWaitMs = 60'000;
constexpr UINT mostAnswerMs = 20'000;
constexpr DWORD pollMs = 2;
constexpr int noWindow = 1;
constexpr int wrongArguments = 2;

DWORD findProgram()
{
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    PROCESSENTRY32W entry = {};
    entry.dwSize = sizeof(entry);
    DWORD found = 0;
    for (BOOL more = Process32FirstW(snapshot, &entry); more != 0 && found == 0;
         more = Process32NextW(snapshot, &entry)) {
        if (lstrcmpiW(entry.szExeFile, L"Miravel.exe") == 0) {
            found = entry.th32ProcessID;
        }
    }
    CloseHandle(snapshot);
    return found;
}

struct Windows
{
    DWORD process;
    HWND main;
    std::vector<HWND> all;
};

BOOL CALLBACK collect(HWND window, LPARAM result)
{
    auto *windows = reinterpret_cast<Windows *>(result);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process == windows->process) {
        windows->all.push_back(window);
        wchar_t title[64] = {};
        GetWindowTextW(window, title, 64);
        if (std::wstring(title) == L"Miravel" && IsWindowVisible(window) != 0) {
            windows->main = window;
        }
    }
    return TRUE;
}

/// Sends a message to every window of the program; false when one of them answers with 0.
bool tellAll(const Windows &windows, UINT message, WPARAM argument)
{
    bool allowed = true;
    for (const HWND window : windows.all) {
        DWORD_PTR answer = 1;
        SendMessageTimeoutW(window, message, argument, static_cast<LPARAM>(ENDSESSION_LOGOFF),
                            SMTO_NORMAL, mostAnswerMs, &answer);
        allowed = allowed && answer != 0;
    }
    return allowed;
}

void sayHowItEnds(HANDLE process, ULONGLONG begun)
{
    if (WaitForSingleObject(process, mostWaitMs) != WAIT_OBJECT_0) {
        std::printf("still runs\n");
        return;
    }
    DWORD status = 0;
    GetExitCodeProcess(process, &status);
    std::printf("exit=%lu ms=%llu\n", status, GetTickCount64() - begun);
}

void sayState(HWND window)
{
    std::printf("%s%s\n", IsIconic(window) != 0 ? "minimised" : "normal",
                GetForegroundWindow() == window ? " front" : "");
}

/// A window that answers no message does nothing else either.
void sayLongestStall(HWND window, const char *end)
{
    ULONGLONG longest = 0;
    while (GetFileAttributesA(end) == INVALID_FILE_ATTRIBUTES) {
        const ULONGLONG begun = GetTickCount64();
        DWORD_PTR answer = 0;
        SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_NORMAL, mostWaitMs, &answer);
        longest = std::max(longest, GetTickCount64() - begun);
        Sleep(pollMs);
    }
    std::printf("stall=%llu\n", longest);
}

int act(const std::string &what, const Windows &windows, HANDLE process)
{
    const ULONGLONG begun = GetTickCount64();
    if (what == "close") {
        PostMessageW(windows.main, WM_CLOSE, 0, 0);
        sayHowItEnds(process, begun);
    } else if (what == "ask-end") {
        std::puts(tellAll(windows, WM_QUERYENDSESSION, 0) ? "allowed" : "refused");
    } else if (what == "keep-on") {
        tellAll(windows, WM_ENDSESSION, FALSE);
    } else if (what == "end") {
        tellAll(windows, WM_QUERYENDSESSION, 0);
        tellAll(windows, WM_ENDSESSION, TRUE);
        sayHowItEnds(process, begun);
    } else if (what == "minimise") {
        ShowWindow(windows.main, SW_MINIMIZE);
    } else if (what == "process") {
        std::printf("process %lu\n", windows.process);
    } else if (what == "state") {
        sayState(windows.main);
    } else {
        return wrongArguments;
    }
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 2) {
        return wrongArguments;
    }
    Windows windows = {findProgram(), nullptr, {}};
    const HANDLE process
        = OpenProcess(SYNCHRONIZE | PROCESS_QUERY_LIMITED_INFORMATION, FALSE, windows.process);
    if (process == nullptr) {
        return noWindow;
    }
    const std::string what = argv[1];
    while (argc > 2 && what != "stall" && GetFileAttributesA(argv[2]) == INVALID_FILE_ATTRIBUTES) {
        Sleep(pollMs);
    }
    EnumWindows(collect, reinterpret_cast<LPARAM>(&windows));
    if (windows.main == nullptr) {
        return noWindow;
    }
    if (what == "stall" && argc > 2) {
        sayLongestStall(windows.main, argv[2]);
        return 0;
    }
    return act(what, windows, process);
}
