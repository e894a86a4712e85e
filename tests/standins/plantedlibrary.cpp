// A library that must not be loaded: it tells that it was, by a file.

#include <cstdio>
#include <cstdlib>

namespace {

const bool told = [] {
    const char *place = std::getenv("PLANTED_TELLS");
    std::FILE *file = place != nullptr ? std::fopen(place, "a") : nullptr;
    return file != nullptr && std::fclose(file) == 0;
}();

} // namespace

extern "C" bool planted()
{
    return told;
}
