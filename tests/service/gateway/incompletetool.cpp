// A library with the right name and only one of the two functions.

extern "C" int InitKorVpnTool(void *, void *, void *)
{
    return 0;
}
