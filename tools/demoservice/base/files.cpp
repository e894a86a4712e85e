#include "tools/demoservice/base/files.h"

#include <cstdio>
#include <fstream>
#include <iterator>

namespace demo {

std::optional<std::string> readFile(const std::string &path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        return std::nullopt;
    }
    std::string bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    if (file.bad()) {
        return std::nullopt;
    }
    return bytes;
}

bool writeFileAtomically(const std::string &path, const std::string &bytes)
{
    const std::string unfinished = path + ".part";
    {
        std::ofstream file(unfinished, std::ios::binary | std::ios::trunc);
        file << bytes << std::flush;
        if (!file) {
            return false;
        }
    }
    return std::rename(unfinished.c_str(), path.c_str()) == 0;
}

} // namespace demo
