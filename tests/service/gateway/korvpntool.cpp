// Stands in for the VPN client's library in tests. The environment tells it what to answer:
// MIRAVEL_TEST_GATEWAY_ADDRESS ("=" and the address; unset: no gateway is selected),
// MIRAVEL_TEST_GATEWAY_PORT, and MIRAVEL_TEST_GATEWAY_CALLS, a file to which every call is
// appended. While the file MIRAVEL_TEST_GATEWAY_HANGS exists it does not answer. On Windows it asks
// for the library MIRAVEL_TEST_GATEWAY_LOADS by that name. Like the real one it is not made for
// several threads at once; it reports when that happens.

#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <thread>

#ifdef _WIN32
#include <windows.h>
#endif

namespace {

constexpr std::size_t addressOffset = 164;
constexpr std::size_t recordSize = 1024;

alignas(std::int32_t) char record[recordSize];
std::atomic<int> callers = 0;

void note(const char *text)
{
    const char *fileName = std::getenv("MIRAVEL_TEST_GATEWAY_CALLS");
    if (std::FILE *file = fileName ? std::fopen(fileName, "a") : nullptr) {
        std::fprintf(file, "%s\n", text);
        std::fclose(file);
    }
}

bool isHeldBack()
{
    const char *fileName = std::getenv("MIRAVEL_TEST_GATEWAY_HANGS");
    std::FILE *file = fileName ? std::fopen(fileName, "r") : nullptr;
    if (file) {
        std::fclose(file);
    }
    return file != nullptr;
}

/// Lives as long as a call.
class Call
{
public:
    Call()
    {
        if (++callers > 1) {
            note("two calls at once");
        }
    }
    ~Call() { --callers; }
    Call(const Call &) = delete;
    Call &operator=(const Call &) = delete;
};

} // namespace

extern "C" int InitKorVpnTool(void *first, void *second, void *third)
{
    const Call call;
#ifdef _WIN32
    if (const char *name = std::getenv("MIRAVEL_TEST_GATEWAY_LOADS")) {
        LoadLibraryA(name);
    }
#endif
    note(!first && !second && !third ? "InitKorVpnTool(0, 0, 0)" : "InitKorVpnTool(other)");
    return -1; // nobody may care
}

extern "C" const void *DoGetSelectedKorInfoBlock(const char *text, int first, int second)
{
    const Call call;
    char line[recordSize];
    std::snprintf(line, sizeof line, "DoGetSelectedKorInfoBlock(\"%s\", %d, %d)", text, first,
                  second);
    note(line);
    while (isHeldBack()) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    const char *address = std::getenv("MIRAVEL_TEST_GATEWAY_ADDRESS");
    if (!address) {
        return nullptr;
    }
    const char *portText = std::getenv("MIRAVEL_TEST_GATEWAY_PORT");
    const auto port = static_cast<std::int32_t>(std::atoi(portText ? portText : "0"));
    std::memset(record, '#', sizeof record); // nothing but the two fields means anything
    std::memcpy(record, &port, sizeof port);
    std::snprintf(record + addressOffset, sizeof record - addressOffset, "%s", address + 1);
    return record;
}
