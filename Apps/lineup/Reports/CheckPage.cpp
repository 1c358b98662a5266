#include "Apps/lineup/Reports/CheckPage.h"

#include "Apps/lineup/Reports/CheckLanes.h"
#include "Apps/lineup/Reports/CheckScopes.h"
#include "Apps/lineup/Reports/CheckTable.h"
#include "Apps/lineup/Reports/Markup.h"
#include "Apps/lineup/Reports/PatchTable.h"

#include <fmt/format.h>

namespace cli {

namespace {

using lineup::CheckReport;

constexpr const char* kStyle =
    "body{font-family:'DejaVu Sans',sans-serif;margin:2em;max-width:1000px;color:#202020;background:#fff}"
    "table{border-collapse:collapse;margin:1em 0}td,th{padding:.2em .8em;text-align:left;border-bottom:1px solid #ddd}"
    "td.number,th.number{text-align:right}.faults{color:#a01010}.right{color:#106010}.cannot-tell{color:#705000}"
    "svg{max-width:100%}";

std::string HtmlTable(const CheckTable& table) {
    std::string text = "<table>\n<tr>";
    const auto mark = [](const CheckColumn& column) { return column.isNumber ? " class=\"number\"" : ""; };
    for (const CheckColumn& column : table.columns) {
        const std::string unit = column.unit.empty() ? "" : fmt::format(" ({})", column.unit);
        text += fmt::format("<th{}>{}{}</th>", mark(column), column.name, unit);
    }
    text += "<th></th></tr>\n";
    for (std::size_t r = 0; r < table.rows.size(); ++r) {
        text += "<tr>";
        for (std::size_t c = 0; c < table.columns.size(); ++c) {
            text += fmt::format("<td{}>{}</td>", mark(table.columns[c]), Escaped(table.rows[r][c]));
        }
        text += fmt::format("<td class=\"faults\">{}</td></tr>\n", Escaped(table.remarks[r]));
    }
    return text + "</table>\n";
}

std::string HtmlList(const CheckReport& report) {
    std::string text;
    for (const lineup::CheckFault& fault : report.faults) {
        text += fmt::format("<li class=\"faults\"><code>{}</code> {}</li>\n", Escaped(fault.id), Escaped(fault.text));
    }
    for (const lineup::CheckNote& note : FurtherNotes(report)) {
        text += fmt::format("<li><code>{}</code> {}</li>\n", Escaped(note.id), Escaped(note.text));
    }
    return text.empty() ? "" : "<ul>\n" + text + "</ul>\n";
}

std::string HtmlSection(const CheckReport& report) {
    std::string text = fmt::format("<section>\n<h2>{}</h2>\n<p>{}</p>\n<p class=\"{}\"><strong>{}</strong></p>\n",
                                   Escaped(report.source), Escaped(CheckHeading(report)),
                                   lineup::CheckVerdictName(report.verdict), CheckOutcome(report));
    text += HtmlList(report);
    if (const int height = CheckLanesHeight(report); height > 0) {
        text += fmt::format(
            "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 {0} {1}\" width=\"{0}\" "
            "height=\"{1}\" role=\"img\" aria-label=\"what was found, over what was expected\">\n{2}</svg>\n",
            kCheckLanesWidth, height, CheckLanes(report));
    }
    if (report.sound && !report.sound->channels.empty()) {
        text += HtmlTable(MakeCheckTable(report, true));
    }
    if (const int height = CheckScopesHeight(report); height > 0) {
        text += fmt::format(
            "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 {0} {1}\" width=\"{0}\" height=\"{1}\" "
            "role=\"img\" aria-label=\"the card, a vectorscope and a waveform monitor\">\n{2}</svg>\n",
            kCheckLanesWidth, height, CheckScopes(report));
        text += HtmlTable(MakePatchTable(report, true));
    }
    return text + "</section>\n";
}

// --- one drawing ----------------------------------------------------------------------------------

constexpr int kLine = 18;  // pixels from one line of text to the next
constexpr int kColumn = 90;
constexpr int kMargin = 12;

class Sheet {
public:
    void Write(int x, const std::string& text, const char* colour, bool isBold = false) {
        mBody += fmt::format("<text x=\"{}\" y=\"{}\" fill=\"{}\"{}>{}</text>\n", x, mY, colour,
                             isBold ? " font-weight=\"bold\"" : "", Escaped(text));
    }
    void NextLine(int lines = 1) { mY += lines * kLine; }

    void Insert(const std::string& elements, int height) {
        mBody += fmt::format("<g transform=\"translate(0 {})\">\n{}</g>\n", mY - kLine / 2, elements);
        mY += height + kLine / 2;
    }

    [[nodiscard]] std::string Whole() const {
        return fmt::format(
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 {0} {1}\" width=\"{0}\" height=\"{1}\" "
            "font-family=\"DejaVu Sans, sans-serif\" font-size=\"12\">\n"
            "<rect width=\"{0}\" height=\"{1}\" fill=\"#ffffff\"/>\n{2}</svg>\n",
            kCheckLanesWidth, mY + kMargin, mBody);
    }

private:
    int mY = kMargin + kLine / 2;
    std::string mBody;
};

constexpr const char* kInk = "#202020";
constexpr const char* kRed = "#a01010";

void WriteTable(const CheckTable& table, Sheet& sheet) {
    const auto place = [](std::size_t c) { return kMargin + static_cast<int>(c) * kColumn; };
    for (std::size_t c = 0; c < table.columns.size(); ++c) {
        sheet.Write(place(c), std::string(table.columns[c].name), kInk, true);
    }
    for (std::size_t r = 0; r < table.rows.size(); ++r) {
        sheet.NextLine();
        const char* const colour = table.remarks[r].empty() ? kInk : kRed;
        for (std::size_t c = 0; c < table.columns.size(); ++c) {
            sheet.Write(place(c), table.rows[r][c], colour);
        }
    }
    sheet.NextLine(2);
}

void WriteReport(const CheckReport& report, Sheet& sheet) {
    sheet.Write(kMargin, report.source, kInk, true);
    sheet.NextLine();
    sheet.Write(kMargin, CheckHeading(report) + ": " + CheckOutcome(report), kInk);
    sheet.NextLine();
    for (const lineup::CheckFault& fault : report.faults) {
        sheet.Write(kMargin, fault.text, kRed);
        sheet.NextLine();
    }
    for (const lineup::CheckNote& note : FurtherNotes(report)) {
        sheet.Write(kMargin, note.text, kInk);
        sheet.NextLine();
    }
    if (const int height = CheckLanesHeight(report); height > 0) {
        sheet.Insert(CheckLanes(report), height);
        sheet.NextLine();
    }
    if (report.sound && !report.sound->channels.empty()) {
        WriteTable(MakeCheckTable(report, true), sheet);
    }
    if (const int height = CheckScopesHeight(report); height > 0) {
        sheet.Insert(CheckScopes(report), height);
        sheet.NextLine();
        WriteTable(MakePatchTable(report, true), sheet);
    }
}

}  // namespace

std::string CheckPage(std::span<const CheckReport> reports) {
    std::string text = fmt::format(
        "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n<title>lineup check</title>\n"
        "<style>{}</style>\n</head>\n<body>\n<h1>lineup check</h1>\n",
        kStyle);
    for (const CheckReport& report : reports) {
        text += HtmlSection(report);
    }
    return text + "</body>\n</html>\n";
}

std::string CheckDrawing(std::span<const CheckReport> reports) {
    Sheet sheet;
    for (const CheckReport& report : reports) {
        WriteReport(report, sheet);
    }
    return sheet.Whole();
}

}  // namespace cli
