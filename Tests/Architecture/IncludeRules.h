#pragma once

#include "Tests/Architecture/SourceTree.h"

#include <string>
#include <vector>

namespace test {

/// What is wrong with the include lines of `file` and with its use of things that one place keeps to
/// itself, one sentence each; empty when nothing is. A file outside Src, Host, Apps and Bridges may
/// include what it likes.
std::vector<std::string> BrokenIncludeRules(const SourceFile& file);

}  // namespace test
