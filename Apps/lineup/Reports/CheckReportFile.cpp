#include "Apps/lineup/Reports/CheckReportFile.h"

#include <lineup/UsageError.h>
#include "Apps/lineup/Reports/CheckJunit.h"
#include "Apps/lineup/Reports/CheckPage.h"
#include "Host/Lineup/Files/TargetFile.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdint>
#include <string>
#include <string_view>

namespace cli {

namespace {

using Reports = std::span<const lineup::CheckReport>;

struct Kind {
    std::string_view extension;
    std::string (*make)(Reports reports);
};
constexpr std::array<Kind, 3> kKinds = {{
    {".html", CheckPage},
    {".svg", CheckDrawing},
    {".xml", CheckJunit},
}};

const Kind& KindOf(const std::filesystem::path& target) {
    std::string extension = target.extension().string();
    std::ranges::transform(extension, extension.begin(), [](unsigned char c) { return std::tolower(c); });
    const auto* const found = std::ranges::find(kKinds, extension, &Kind::extension);
    if (found == kKinds.end()) {
        throw lineup::UsageError("report", target.string(), "the name must end in .html, .svg or .xml");
    }
    return *found;
}

}  // namespace

void RequireReportName(const std::filesystem::path& target) {
    static_cast<void>(KindOf(target));
}

void WriteCheckReport(const std::filesystem::path& target, Reports reports) {
    const std::string text = KindOf(target).make(reports);
    lineup::TargetFile file(target, true);
    file.Write(std::span(reinterpret_cast<const std::uint8_t*>(text.data()), text.size()));
    file.Commit();
}

}  // namespace cli
