#pragma once

#include "tools/demoservice/knowledge/knowledge.h"

#include <memory>
#include <string>

namespace demo {

/// Reads a knowledge file; its pictures lie in the folder "pictures" beside it. docs/protocol.md
/// describes the file. On a mistake returns null and puts one sentence into `error`.
std::unique_ptr<Knowledge> loadKnowledge(const std::string &path, std::string &error);

} // namespace demo
