#include "Apps/manual/Roff.h"

#include <fmt/format.h>

#include <array>
#include <sstream>

namespace manual {

namespace {

struct Section {
    std::string_view start;
    std::string_view title;
};
constexpr std::array<Section, 2> kSections = {{{"Examples:", "EXAMPLES"}, {"Exit status:", "EXIT STATUS"}}};

std::string_view Trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(' ');
    return first == std::string_view::npos ? "" : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

// "term   meaning" as a tagged paragraph; a term may stand alone.
std::string Item(std::string_view line) {
    const std::size_t gap = line.find("  ");
    const std::string term = ".TP\n" + Bold(line.substr(0, gap)) + "\n";
    return gap == std::string_view::npos ? term : term + Filled(line.substr(gap));
}

std::string Text(std::string_view line) {
    for (const Section& section : kSections) {
        if (line.starts_with(section.start)) {
            const std::string_view rest = Trimmed(line.substr(section.start.size()));
            return fmt::format(".SH {}\n{}", section.title, rest.empty() ? "" : Filled(rest));
        }
    }
    return Filled(line);
}

}  // namespace

std::string Escaped(std::string_view text) {
    std::string escaped;
    for (const char letter : text) {
        if (letter == '\\') {
            escaped += "\\e";
        } else if (letter == '-') {
            escaped += "\\-";
        } else if (letter == '\'') {
            escaped += "\\(aq";
        } else if (letter == '.' && escaped.empty()) {
            escaped += "\\&.";
        } else {
            escaped += letter;
        }
    }
    return escaped;
}

std::string Filled(std::string_view text) {
    constexpr std::size_t kWidth = 78;
    std::istringstream words{std::string(text)};
    std::string lines;
    std::string line;
    for (std::string word; words >> word;) {
        const std::string escaped = Escaped(word);
        if (!line.empty() && line.size() + 1 + escaped.size() > kWidth) {
            lines += line + "\n";
            line.clear();
        }
        line += (line.empty() ? "" : " ") + escaped;
    }
    return lines + line + "\n";
}

std::string Bold(std::string_view text) {
    return fmt::format("\\fB{}\\fR", Escaped(text));
}

std::string Italic(std::string_view text) {
    return fmt::format("\\fI{}\\fR", Escaped(text));
}

std::string FromHelp(std::string_view text) {
    std::string page;
    std::istringstream lines{std::string(text)};
    bool inList = false;
    bool paragraph = false;
    for (std::string line; std::getline(lines, line);) {
        const std::size_t indent = line.find_first_not_of(' ');
        if (indent == std::string::npos) {
            paragraph = true;
        } else if (indent == 0) {
            const std::string out = Text(line);
            page += (paragraph || inList) && !out.starts_with(".SH") ? ".PP\n" + out : out;
            inList = paragraph = false;
        } else if (indent > 2 && inList) {
            page += ".br\n" + Filled(line);
        } else {
            page += Item(Trimmed(line));
            inList = true;
            paragraph = false;
        }
    }
    return page;
}

}  // namespace manual
