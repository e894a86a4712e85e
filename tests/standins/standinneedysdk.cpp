// Stands in for the VPN client's library that needs another one from its own folder.

#ifdef _WIN32
#define IMPORTED extern "C" __declspec(dllimport)
#define EXPORTED extern "C" __declspec(dllexport)
#else
#define IMPORTED extern "C"
#define EXPORTED extern "C" __attribute__((visibility("default")))
#endif

IMPORTED int partOfTheState();

/// The state that the other library gives; no account.
EXPORTED int getAccount(char * /*buffer*/, int * /*size*/)
{
    return partOfTheState();
}
