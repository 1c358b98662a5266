#include "Tests/Architecture/ModuleSymbols.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>
#include <sstream>
#include <stdexcept>

namespace test {

namespace {

// The lines a command prints. Throws when it cannot be run or does not succeed.
std::vector<std::string> Run(const std::string& command) {
    FILE* const pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) {
        throw std::runtime_error("cannot run " + command);
    }
    std::string text;
    std::array<char, 4096> block{};
    for (std::size_t size = 0; (size = std::fread(block.data(), 1, block.size(), pipe)) > 0;) {
        text.append(block.data(), size);
    }
    if (pclose(pipe) != 0) {
        throw std::runtime_error("this command failed: " + command);
    }
    std::istringstream stream(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

std::string Quoted(const std::filesystem::path& file) {
    return "'" + file.string() + "'";
}

// What stands between `open` and `close`.
std::string Between(const std::string& text, char open, char close) {
    const std::size_t begin = text.find(open) + 1;
    return text.substr(begin, text.find(close, begin) - begin);
}

}  // namespace

std::vector<Symbol> DynamicSymbols(const std::filesystem::path& file) {
    std::vector<Symbol> symbols;
    // NAME TYPE [ADDRESS [SIZE]], the name as NAME@VERSION or NAME@@VERSION where it has a version.
    for (const std::string& line : Run(TEST_NM " --dynamic --format=posix " + Quoted(file))) {
        std::istringstream fields(line);
        Symbol symbol;
        fields >> symbol.name >> symbol.type;
        if (const std::size_t at = symbol.name.find('@'); at != std::string::npos) {
            symbol.version = symbol.name.substr(symbol.name.find_last_of('@') + 1);
            symbol.name.resize(at);
        }
        symbols.push_back(symbol);
    }
    return symbols;
}

std::vector<std::string> DynamicEntries(const std::filesystem::path& file, const std::string& tag) {
    std::vector<std::string> values;
    for (const std::string& line : Run("LC_ALL=C " TEST_READELF " --dynamic --wide " + Quoted(file))) {
        if (line.find("(" + tag + ")") != std::string::npos) {
            values.push_back(Between(line, '[', ']'));
        }
    }
    return values;
}

std::vector<std::string> ExportedNames(const std::vector<Symbol>& symbols) {
    std::vector<std::string> names;
    for (const Symbol& symbol : symbols) {
        if (symbol.type != 'U' && symbol.type != 'w' && symbol.type != 'v') {
            names.push_back(symbol.name);
        }
    }
    std::ranges::sort(names);
    return names;
}

std::vector<std::string> UnknownNames(const std::vector<Symbol>& symbols, const std::vector<Symbol>& library) {
    const std::vector<std::string> offered = ExportedNames(library);
    std::vector<std::string> names;
    for (const Symbol& symbol : symbols) {
        if (symbol.type == 'U' && symbol.version.empty() && !std::ranges::binary_search(offered, symbol.name)) {
            names.push_back(symbol.name);
        }
    }
    return names;
}

}  // namespace test
