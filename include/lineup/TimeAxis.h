#pragma once

#include <lineup/Api.h>
#include <lineup/interface/Media/TickTime.h>

#include <string>

/// The marks of a time axis.
namespace lineup {

/// The shortest step of a pleasant axis that is not shorter than `atLeast`, 1 tick or more. Steps are 1, 2 or
/// 5 times a power of ten, from 1 microsecond to 10 s and again in hours; between those, parts of a minute
/// and of an hour: 20 s, 30 s, 1, 2, 5, 10, 20 and 30 minutes.
[[nodiscard]] LINEUP_API zelmediatypes::TickTime NiceTimeStep(zelmediatypes::TickTime atLeast);

/// `time`, a multiple of `step`, for an axis that reaches as far from 0 as `furthest`: "2.5 ms" on one of
/// less than a second, "0.25 s" on one of less than a minute, "1:30" or "1:30.25" on one of less than an
/// hour, else "1:00:00". As many decimals as the step needs, down to the microsecond.
[[nodiscard]] LINEUP_API std::string TimeLabel(zelmediatypes::TickTime time, zelmediatypes::TickTime step,
                                               zelmediatypes::TickTime furthest);

}  // namespace lineup
