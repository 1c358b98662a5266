#include "Apps/lineup/Reports/PatchTable.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace cli {

double PatchOff(const lineup::PatchReport& patch) {
    double most = 0;
    for (std::size_t i = 0; i < std::min(patch.expected.size(), patch.measured.size()); ++i) {
        most = std::max(most, std::abs(patch.measured[i] - patch.expected[i]));
    }
    return most;
}

CheckTable MakePatchTable(const lineup::CheckReport& report, bool all) {
    CheckTable table;
    if (!report.picture) {
        return table;
    }
    table.columns = {{.name = "patch", .unit = ""}};
    for (const char* const name : {"Y'", "Cb", "Cr", "due Y'", "due Cb", "due Cr"}) {
        table.columns.push_back({.name = name, .unit = "", .isNumber = true});
    }
    for (const lineup::PatchReport& patch : report.picture->patches) {
        const bool isOff = PatchOff(patch) > kPatchOff;
        if (!all && !isOff) {
            continue;
        }
        std::vector<std::string> row{patch.name};
        for (const auto* const codes : {&patch.measured, &patch.expected}) {
            for (const double code : *codes) {
                row.push_back(fmt::format("{:.1f}", code));
            }
        }
        row.resize(table.columns.size());
        table.rows.push_back(std::move(row));
        table.remarks.push_back(isOff ? fmt::format("off by {:.1f}", PatchOff(patch)) : "");
    }
    return table;
}

}  // namespace cli
