#pragma once

#include <lineup/CheckReport.h>

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace lineup {

/// A column of codes in a table of patches.
struct PatchColumn {
    std::string_view code;  ///< "Y'", "Cb", "Cr"
    bool isDue;             ///< what is expected; else what was measured
    std::size_t index;      ///< in the codes of a patch

    /// Empty where it could not be measured.
    [[nodiscard]] std::optional<double> Of(const PatchReport& patch) const {
        const auto& codes = isDue ? patch.expected : patch.measured;
        return index < codes.size() ? std::optional(codes[index]) : std::nullopt;
    }
};

/// The columns of codes of a table of patches, in their order, wherever one is shown.
inline constexpr std::array<PatchColumn, 6> kPatchColumns = {
    {{"Y'", false, 0}, {"Cb", false, 1}, {"Cr", false, 2}, {"Y'", true, 0}, {"Cb", true, 1}, {"Cr", true, 2}}};

}  // namespace lineup
