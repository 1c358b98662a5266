#pragma once

#include <lineup/Rational.h>
#include "Host/Interface/Media/TickTime.h"

#include <string>
#include <string_view>

/// Reads what a person typed. Each function throws lineup::UsageError with `option`, the text and what
/// would be right.
namespace cli {

/// A finite number.
[[nodiscard]] double ParseNumber(std::string_view option, std::string_view text, std::string_view expected);

struct Size {
    int width;   ///< pixels
    int height;  ///< pixels
};

/// "1920x1080".
[[nodiscard]] Size ParseSize(std::string_view text);

/// "25", "30000/1001", or the usual short forms of such fractions: "23.976", "29.97", "59.94".
[[nodiscard]] lineup::Rational ParseFrameRate(std::string_view text);

/// A time or a length: seconds ("90", "2.5"), or "MM:SS" or "HH:MM:SS" with decimals allowed in the
/// seconds; a minus sign in front makes it negative. At most 1000 hours either way.
[[nodiscard]] zelmediatypes::TickTime ParseTime(std::string_view option, std::string_view text);

/// The frame or sample, at num / den a second, nearest to `time`; halves go up.
[[nodiscard]] std::int64_t NearestIndex(zelmediatypes::TickTime time, lineup::Rational rate);

}  // namespace cli
