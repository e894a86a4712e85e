#pragma once

#include <map>
#include <string>

namespace demo {

/// Puts pictures into replies: each {{picture:NAME}} becomes a paragraph with the file NAME of one
/// folder inside it as Base64 (RFC 2397). Used while loading, on one thread.
class Pictures
{
public:
    explicit Pictures(std::string folder);

    /// `reply` with every picture in its place. On a picture that is not there or is no PNG, JPEG
    /// or GIF, puts a sentence into `error` and returns what it has.
    std::string inlined(const std::string &reply, std::string &error);

private:
    std::string paragraph(const std::string &name, std::string &error);

    const std::string m_folder;
    std::map<std::string, std::string> m_paragraphs; ///< by name, each read once
};

} // namespace demo
