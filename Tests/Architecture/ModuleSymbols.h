#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace test {

/// A shared object's dynamic symbol, as `nm -D` prints it.
struct Symbol {
    std::string name;
    std::string version;  ///< "GLIBC_2.2.5"; empty for a symbol without one
    char type = 0;        ///< nm's letter: 'T' a function it defines, 'U' one it needs, 'w' one it can do without
};

std::vector<Symbol> DynamicSymbols(const std::filesystem::path& file);

/// The values of a shared object's dynamic entries called `tag`: "NEEDED" for the libraries it needs,
/// "RUNPATH" for the folders it looks for them in.
std::vector<std::string> DynamicEntries(const std::filesystem::path& file, const std::string& tag);

/// The names of the symbols that the file offers to others, sorted.
std::vector<std::string> ExportedNames(const std::vector<Symbol>& symbols);

/// The names that a file needs and that neither `library` offers nor the C and C++ runtime libraries
/// do, whose symbols carry versions.
std::vector<std::string> UnknownNames(const std::vector<Symbol>& symbols, const std::vector<Symbol>& library);

}  // namespace test
