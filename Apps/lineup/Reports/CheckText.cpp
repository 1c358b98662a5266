#include "Apps/lineup/Reports/CheckText.h"

#include "Apps/lineup/Reports/CheckTable.h"
#include "Apps/lineup/Reports/PatchTable.h"

#include <fmt/format.h>

#include <algorithm>
#include <vector>

namespace cli {

namespace {

using lineup::CheckReport;
using lineup::CheckVerdict;

constexpr const char* kGap = "  ";

enum class Colour { Red = 31, Green = 32, Yellow = 33 };

std::string Coloured(const std::string& text, Colour colour, bool isColoured) {
    return isColoured && !text.empty() ? fmt::format("\033[{}m{}\033[0m", static_cast<int>(colour), text) : text;
}

// Bytes of UTF-8 that begin a character.
std::size_t Width(const std::string& text) {
    return static_cast<std::size_t>(
        std::ranges::count_if(text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
}

std::string Padded(const std::string& text, std::size_t width, bool toTheRight) {
    const std::string blanks(width - std::min(width, Width(text)), ' ');
    return toTheRight ? blanks + text : text + blanks;
}

// Numbers stand above each other; units follow those of the first row.
std::string TableText(const CheckTable& table, bool isColoured) {
    std::string head;
    std::vector<std::string> lines(table.rows.size());
    for (std::size_t c = 0; c < table.columns.size(); ++c) {
        const CheckColumn& column = table.columns[c];
        std::size_t width = Width(column.name);
        for (const auto& row : table.rows) {
            width = std::max(width, Width(row[c]));
        }
        const std::string unitBlanks(column.unit.empty() ? 0 : column.unit.size() + 1, ' ');
        head += Padded(column.name, width, column.isNumber) + unitBlanks + kGap;
        bool isUnitDue = !column.unit.empty();
        for (std::size_t r = 0; r < lines.size(); ++r) {
            const bool hasUnit = isUnitDue && !table.rows[r][c].empty();
            lines[r] += Padded(table.rows[r][c], width, column.isNumber) +
                        (hasUnit ? fmt::format(" {}", column.unit) : unitBlanks) + kGap;
            isUnitDue = isUnitDue && !hasUnit;
        }
    }
    const auto trimmed = [](std::string line) { return line.erase(line.find_last_not_of(' ') + 1) + "\n"; };
    std::string text = trimmed(head);
    for (std::size_t r = 0; r < lines.size(); ++r) {
        text += trimmed(lines[r] + Coloured(table.remarks[r], Colour::Red, isColoured));
    }
    return text;
}

Colour ColourOf(CheckVerdict verdict) {
    return verdict == CheckVerdict::Right    ? Colour::Green
           : verdict == CheckVerdict::Faults ? Colour::Red
                                             : Colour::Yellow;
}

}  // namespace

std::string CheckText(const CheckReport& report, const CheckTextStyle& style) {
    std::string text = style.namesRecording ? fmt::format("{}\n", report.source) : "";
    text += CheckHeading(report) + "\n";
    if (report.sound && !report.sound->channels.empty() && !report.sound->expected.empty()) {
        text += "\n" + TableText(MakeCheckTable(report, false), style.isColoured);
    }
    if (const CheckTable patches = MakePatchTable(report, false); !patches.rows.empty()) {
        text += "\n" + TableText(patches, style.isColoured);
    }
    text += "\n" + Coloured(CheckOutcome(report), ColourOf(report.verdict), style.isColoured) + "\n";
    for (const lineup::CheckFault& fault : report.faults) {
        text += fmt::format("{}{}\n", kGap, fault.text);
    }
    for (const lineup::CheckNote& note : FurtherNotes(report)) {
        text += fmt::format("note: {}\n", note.text);
    }
    return text;
}

std::string CheckComplaints(const CheckReport& report) {
    std::string text;
    for (const lineup::CheckFault& fault : report.faults) {
        text += fmt::format("{}: {}\n", report.source, fault.text);
    }
    if (report.verdict == CheckVerdict::CannotTell) {
        text += fmt::format("{}: cannot tell: {}\n", report.source, CheckHeading(report));
    }
    return text;
}

}  // namespace cli
