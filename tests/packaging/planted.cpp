// A library that somebody has planted: it leaves a file as soon as it is loaded.

#include <windows.h>

extern "C" BOOL WINAPI DllMain(HINSTANCE /*library*/, DWORD reason, LPVOID /*reserved*/)
{
    wchar_t marker[MAX_PATH];
    if (reason == DLL_PROCESS_ATTACH
        && GetEnvironmentVariableW(L"MIRAVEL_MARKER", marker, MAX_PATH) != 0) {
        CloseHandle(CreateFileW(marker, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
    }
    return TRUE;
}

extern "C" __declspec(dllexport) void CALLBACK touch()
{
}
