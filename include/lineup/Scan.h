#pragma once

#include <array>
#include <string_view>

namespace lineup {

/// Whether a frame is one picture or two fields, and which of them is shown first.
enum class Scan {
    Progressive,
    TopFieldFirst,     ///< HD, and 625 lines
    BottomFieldFirst,  ///< 525 lines
};

struct ScanName {
    std::string_view name;
    Scan scan;
};

/// The ways of scanning as command lines and reports call them; the one that is used unasked first.
inline constexpr std::array<ScanName, 3> kScanNames = {
    {{"progressive", Scan::Progressive}, {"tff", Scan::TopFieldFirst}, {"bff", Scan::BottomFieldFirst}},
};

}  // namespace lineup
