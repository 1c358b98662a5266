#pragma once

#include <cstddef>
#include <string_view>

namespace zelcore {

/// How deep the lists of a property list may lie in one another, and how many there may be in its text
/// form: many times what an Info.plist needs.
inline constexpr int kDeepestPlistList = 64;
inline constexpr int kMostPlistLists = 2000;

/// The bytes that the values of a binary property list may take, with kPlistValueBytes for each on top of
/// its own. A value that several lists hold counts as often.
inline constexpr std::size_t kLargestPlistValues = 1U << 20U;
inline constexpr std::size_t kPlistValueBytes = 16;

enum class PlistCheck {
    Sound,    ///< it can be given to a reader; in the text form it may still be malformed
    Broken,   ///< binary, and a value lies outside the file
    TooMuch,  ///< beyond the limits, which a reader would meet with recursion and copies
};

/// Looks at a property list before a reader does.
[[nodiscard]] PlistCheck CheckPlist(std::string_view file);

}  // namespace zelcore
