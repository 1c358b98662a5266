#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace lineup::validation {

/// The names that a shared object offers to others, as its dynamic symbol table has them. Throws
/// Failure when the file is not a 64-bit ELF file or its tables do not lie within it.
[[nodiscard]] std::vector<std::string> ExportedSymbols(const std::filesystem::path& file);

}  // namespace lineup::validation
