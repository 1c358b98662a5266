#pragma once

#include <lineup/Api.h>
#include <lineup/BarsAndToneInfo.h>

#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace lineup {

/// How far something may be off before it counts as a fault. Measuring is finer.
struct CheckTolerance {
    std::string_view name;  ///< "level": on the command line --tolerance level=0.2
    double value;           ///< unless another is set
    std::string_view unit;
    std::string_view meaning;
};

/// All tolerances.
[[nodiscard]] LINEUP_API std::span<const CheckTolerance> CheckTolerances();

/// The tolerance called `name`, or null.
[[nodiscard]] LINEUP_API const CheckTolerance* FindCheckTolerance(std::string_view name);

/// What a check of a recording is to look for. What is left out it finds out.
struct CheckSettings {
    std::string expect = "auto";              ///< "auto", "tone", the name of an Ident, or "none": the picture alone
    std::optional<double> frequencyHz;        ///< of a steady tone
    std::optional<double> levelDb;            ///< dBFS of the peak that was sent
    std::optional<std::string> channels;      ///< the name of the ChannelLayout that was sent
    std::optional<BarsAndToneInfo> settings;  ///< of the clip that was sent; goes before the four above
    std::string card = "auto";                ///< "auto", "hd", "sd", or "none": the sound alone
    std::optional<double> fromSeconds;        ///< where looking begins
    std::optional<double> forSeconds;         ///< for how long
    std::map<std::string, double, std::less<>> tolerances;  ///< those that are not as in CheckTolerances
};

/// Throws UsageError when a value is out of range, a name is unknown, or two contradict each other.
LINEUP_API void ValidateCheckSettings(const CheckSettings& settings);

/// The tolerance called `name`, as set or as in the table. The name must be one of the table's.
[[nodiscard]] LINEUP_API double ToleranceOf(const CheckSettings& settings, std::string_view name);

}  // namespace lineup
