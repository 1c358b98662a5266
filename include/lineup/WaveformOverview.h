#pragma once

#include <lineup/Api.h>
#include <lineup/Clip.h>
#include <lineup/interface/Media/TickTime.h>

#include <cstdint>
#include <string>
#include <vector>

namespace lineup {

/// A stretch of clip time cut into columns of equal length. Column i stands for the clip time
/// start + i * length / columns.
struct OverviewSpan {
    std::int64_t startSample = 0;         ///< of column 0, at the clip's sample rate; may be negative
    zelmediatypes::TickTime length = {};  ///< of all columns together
    int columns = 0;
};

/// One channel's columns, linear amplitudes, 1.0 being full scale. A value that the plug-in did not
/// write is NaN.
struct ChannelOverview {
    std::string name;  ///< as ChannelLayout has it; its number from 1 on in a layout without names
    std::vector<float> maxima;
    std::vector<float> minima;
};

/// The waveform overview of a clip.
///
/// A column is the least and the greatest value of its channel from the column's clip time up to the next one's.
/// - A steady tone with at least kFewestColumnsPerCycle columns a cycle: of its wave, found to within 0.5 % of the
///   level and lagging by a column or a 32nd of a cycle at the most, whichever is less. With fewer columns: +level
///   and -level.
/// - A sequence: +level and -level of the loudest sound that is heard in the column, be it for a moment; 0 and
///   0 for silence. What begins in the last 64th of a column may show in the next one only. Sounds shorter than
///   50 ms, and in columns of many minutes those shorter than the column divided by some hundreds, may be missed.
struct WaveformOverview {
    OverviewSpan span;

    /// The clip time of column 0.
    zelmediatypes::TickTime start;

    /// How far apart the columns really are: span.length / span.columns, or longer by so little (less than
    /// 2^-22 of itself, and a tick a point) that the last column stands less than a third of a column late.
    zelmediatypes::FrameRate columnLength;

    /// The columns draw a tone's wave; else each stands for a level.
    bool showsWave = false;

    std::vector<ChannelOverview> channels;  ///< in the plug-in's order
};

/// Fewer columns than this draw a wave with a false beat.
inline constexpr int kFewestColumnsPerCycle = 4;

/// The most columns of one overview.
inline constexpr int kMostOverviewColumns = 65536;

/// The shortest column, 1 microsecond: many columns a sample at any sample rate of sound.
inline constexpr zelmediatypes::TickTime kShortestColumn{zelmediatypes::kTicksPerSecond / 1000000};

/// The longest column, 100 days: its rate in single precision still stands for ticks that can be counted.
inline constexpr zelmediatypes::TickTime kLongestColumn{std::int64_t{100} * 86400 * zelmediatypes::kTicksPerSecond};

/// Asks the plug-in for the peaks of `span`. Throws UsageError (option "duration") for a
/// length below kShortestColumn or above kLongestColumn a column, Error for fewer than 1 or more than
/// kMostOverviewColumns columns or when the plug-in refuses. Any thread.
[[nodiscard]] LINEUP_API WaveformOverview ReadOverview(const Clip& clip, const OverviewSpan& span);

}  // namespace lineup
