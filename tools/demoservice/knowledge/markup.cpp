#include "tools/demoservice/knowledge/markup.h"

#include <sstream>

namespace demo {

namespace {

const char *const gap = "<div style=\"font-size:7px\">&nbsp;</div>";
const char *const hangingBlock
    = "<div style=\"margin-left:14px;text-indent:-14px;margin-top:2px\">";

bool beginsWith(const std::string &text, const char *what)
{
    return text.rfind(what, 0) == 0;
}

bool isPicture(const std::string &block)
{
    return beginsWith(block, "{{picture:");
}

bool isStep(const std::string &line)
{
    return line.size() > 2 && line[0] >= '0' && line[0] <= '9' && line[1] == '.' && line[2] == ' ';
}

std::string lines(const std::string &block)
{
    std::istringstream stream(block);
    std::string result;
    for (std::string line; std::getline(stream, line);) {
        result += (isStep(line) ? hangingBlock : "<div>") + line + "</div>";
    }
    return result;
}

} // namespace

std::string markup(const std::vector<std::string> &blocks)
{
    std::string result;
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        const std::string &block = blocks[i];
        if (isPicture(block) || beginsWith(block, "<p>")) {
            result += block;
            continue;
        }
        const bool isLast = i + 1 == blocks.size();
        result += "<p>";
        result += i > 0 && isPicture(blocks[i - 1]) ? gap : "";
        result += lines(block);
        result += isLast ? "" : gap;
        result += "</p>";
    }
    return result;
}

} // namespace demo
