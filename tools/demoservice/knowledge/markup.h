#pragma once

#include <string>
#include <vector>

namespace demo {

/// The rich text of a reply that is written as blocks. A block is a paragraph; its lines, parted by
/// "\n", stay lines. A line that begins with a digit, a full stop and a blank is a step and hangs
/// behind its number. "{{picture:NAME}}" is a block of its own and stays as it is; so does a block
/// that brings its own "<p>". The client gives paragraphs no margin, so a low empty line parts
/// them.
std::string markup(const std::vector<std::string> &blocks);

} // namespace demo
