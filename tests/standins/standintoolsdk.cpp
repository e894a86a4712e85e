// Stands in for the VPN client's library. The account it reports and its state value come from the
// environment variables STANDIN_ACCOUNT and STANDIN_STATE.

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace {

constexpr int expectedBytes = 64;
constexpr int wrongSize = -1001;
constexpr int dirtyBuffer = -1002;

int calls = 0; // starts anew when the library is unloaded in between

} // namespace

#ifdef _WIN32
#define EXPORTED extern "C" __declspec(dllexport)
#else
#define EXPORTED extern "C" __attribute__((visibility("default")))
#endif

/// The state of STANDIN_STATE, the number of calls when there is none.
EXPORTED int getAccount(char *buffer, int *size)
{
    ++calls;
    if (*size != expectedBytes) {
        return wrongSize;
    }
    if (std::any_of(buffer, buffer + expectedBytes, [](char byte) { return byte != 0; })) {
        return dirtyBuffer;
    }
    if (const char *account = std::getenv("STANDIN_ACCOUNT")) {
        // As full as it gets: an account of the buffer's size leaves no room for a NUL.
        std::copy_n(account, std::min<std::size_t>(std::strlen(account), expectedBytes), buffer);
    }
    const char *state = std::getenv("STANDIN_STATE");
    return state ? std::atoi(state) : calls;
}
