#include "tools/demoservice/knowledge/pictures.h"

#include "tools/demoservice/base/files.h"

#include <openssl/evp.h>

#include <utility>
#include <vector>

namespace demo {

namespace {

std::string base64(const std::string &bytes)
{
    std::vector<unsigned char> text(4 * ((bytes.size() + 2) / 3) + 1); // and a closing NUL
    const int length
        = EVP_EncodeBlock(text.data(), reinterpret_cast<const unsigned char *>(bytes.data()),
                          static_cast<int>(bytes.size()));
    return {text.begin(), text.begin() + length};
}

/// The subtype of "image/" by the first bytes of the file; empty for anything unknown.
std::string imageType(const std::string &bytes)
{
    if (bytes.rfind("\x89PNG\r\n", 0) == 0) {
        return "png";
    }
    if (bytes.rfind("\xFF\xD8\xFF", 0) == 0) {
        return "jpeg";
    }
    return bytes.rfind("GIF8", 0) == 0 ? "gif" : "";
}

} // namespace

Pictures::Pictures(std::string folder)
    : m_folder(std::move(folder))
{
}

std::string Pictures::inlined(const std::string &reply, std::string &error)
{
    static const std::string opening = "{{picture:";
    static const std::string closing = "}}";
    std::string done;
    std::size_t at = 0;
    while (true) {
        const std::size_t begin = reply.find(opening, at);
        const std::size_t end = begin == std::string::npos ? begin : reply.find(closing, begin);
        if (end == std::string::npos) {
            return done + reply.substr(at);
        }
        const std::size_t name = begin + opening.size();
        done += reply.substr(at, begin - at);
        done += paragraph(reply.substr(name, end - name), error);
        at = end + closing.size();
    }
}

std::string Pictures::paragraph(const std::string &name, std::string &error)
{
    const auto known = m_paragraphs.find(name);
    if (known != m_paragraphs.end()) {
        return known->second;
    }
    if (name.find('/') != std::string::npos) {
        error = "picture " + name + " is not a plain file name";
        return {};
    }
    const auto bytes = readFile(m_folder + "/" + name);
    if (!bytes) {
        error = "picture " + m_folder + "/" + name + " cannot be read";
        return {};
    }
    const std::string type = imageType(*bytes);
    if (type.empty()) {
        error = "picture " + name + " is no PNG, JPEG or GIF file";
        return {};
    }
    std::string text = "<p><img src=\"data:image/" + type + ";base64," + base64(*bytes)
                     + "\" style=\"max-width:100%;\"/></p>";
    m_paragraphs.emplace(name, text);
    return text;
}

} // namespace demo
