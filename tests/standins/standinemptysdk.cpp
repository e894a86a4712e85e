// A library that loads but lacks the function that is asked for.

#ifdef _WIN32
extern "C" __declspec(dllexport) int somethingElse();
#else
extern "C" int somethingElse();
#endif

int somethingElse()
{
    return 0;
}
