// What standinneedysdk cannot be loaded without.

#ifdef _WIN32
extern "C" __declspec(dllexport) int partOfTheState();
#else
extern "C" __attribute__((visibility("default"))) int partOfTheState();
#endif

int partOfTheState()
{
    return 7;
}
