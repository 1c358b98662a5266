#include "Apps/lineup/Reports/PatchTable.h"

#include "Host/Lineup/Check/PatchColumns.h"

#include <fmt/format.h>

namespace cli {

CheckTable MakePatchTable(const lineup::CheckReport& report, bool all) {
    CheckTable table;
    if (!report.picture) {
        return table;
    }
    table.columns = {{.name = "patch", .unit = ""}};
    for (const lineup::PatchColumn& column : lineup::kPatchColumns) {
        table.columns.push_back(
            {.name = fmt::format("{}{}", column.isDue ? "due " : "", column.code), .unit = "", .isNumber = true});
    }
    for (const lineup::PatchReport& patch : report.picture->patches) {
        if (!all && !patch.isOff) {
            continue;
        }
        std::vector<std::string> row{patch.name};
        for (const lineup::PatchColumn& column : lineup::kPatchColumns) {
            const auto code = column.Of(patch);
            row.push_back(code ? fmt::format("{:.1f}", *code) : "");
        }
        table.rows.push_back(std::move(row));
        table.remarks.push_back(patch.isOff ? fmt::format("off by {:.1f}", patch.off) : "");
    }
    return table;
}

}  // namespace cli
