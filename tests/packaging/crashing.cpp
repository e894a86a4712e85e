// Writes a crash dump as the system would. crashing <dump>: of its own crash in a known function;
// crashing <dump> <program>: of the running program of that name, as it is.

#include <windows.h>
#include <dbghelp.h>
#include <tlhelp32.h>

#include <cstdlib>
#include <cstring>

namespace {

const char *dumpFile = nullptr;

void write(HANDLE process, DWORD number, EXCEPTION_POINTERS *exception)
{
    const HANDLE file = CreateFileA(dumpFile, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    MINIDUMP_EXCEPTION_INFORMATION information = {GetCurrentThreadId(), exception, FALSE};
    MiniDumpWriteDump(process, number, file, MiniDumpNormal,
                      exception != nullptr ? &information : nullptr, nullptr, nullptr);
    CloseHandle(file);
}

LONG WINAPI writeOwn(EXCEPTION_POINTERS *exception)
{
    write(GetCurrentProcess(), GetCurrentProcessId(), exception);
    return EXCEPTION_EXECUTE_HANDLER;
}

DWORD processOf(const char *program)
{
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    PROCESSENTRY32 entry = {};
    entry.dwSize = sizeof(entry);
    for (BOOL more = Process32First(snapshot, &entry); more != 0;
         more = Process32Next(snapshot, &entry)) {
        if (std::strcmp(entry.szExeFile, program) == 0) {
            return entry.th32ProcessID;
        }
    }
    return 0;
}

} // namespace

__attribute__((noinline)) void functionThatCrashes(volatile int *nowhere)
{
    *nowhere = 1;
}

int main(int argc, char *argv[])
{
    dumpFile = argv[1];
    if (argc > 2) {
        const DWORD number = processOf(argv[2]);
        write(OpenProcess(PROCESS_ALL_ACCESS, FALSE, number), number, nullptr);
        return EXIT_SUCCESS;
    }
    SetUnhandledExceptionFilter(writeOwn);
    functionThatCrashes(nullptr);
    return EXIT_SUCCESS;
}
