#pragma once

#include <lineup/CheckReport.h>

#include <string>
#include <string_view>
#include <vector>

/// What all reports of a check say alike, in words: on a terminal, on a page, in a drawing.
namespace cli {

/// "BLITS ident, 5.1, from 0:03.214 on, 4 cycles, 48 kHz; HD card, 1920x1080, 10 bits, bt709, limited range"; what a
/// note says where no line-up was found.
[[nodiscard]] std::string CheckHeading(const lineup::CheckReport& report);

/// The notes that the heading does not say already.
[[nodiscard]] std::vector<lineup::CheckNote> FurtherNotes(const lineup::CheckReport& report);

/// "2 faults", "nothing wrong", "cannot tell".
[[nodiscard]] std::string CheckOutcome(const lineup::CheckReport& report);

/// A column of the table of inputs.
struct CheckColumn {
    std::string name;
    std::string_view unit;  ///< stands behind the first number
    bool isNumber = false;
};

/// The inputs, a row each; what was not measured is empty.
struct CheckTable {
    std::vector<CheckColumn> columns;
    std::vector<std::vector<std::string>> rows;  ///< rows[i][c], without units
    std::vector<std::string> remarks;            ///< one a row: the faults of this input, in short
};

/// `all` adds distortion, offset and bits.
[[nodiscard]] CheckTable MakeCheckTable(const lineup::CheckReport& report, bool all);

/// "1:02:03.456", without hours where there are none.
[[nodiscard]] std::string PlaceText(double seconds);

}  // namespace cli
