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
/// A column is a sample, not a summary: it shows what its channel does at the column's own clip time.
/// - A tone drawn as a band is its level: maximum +level, minimum -level; silence is 0 and 0. A sound or
///   a gap shorter than a column can fall between two columns. The audio from one column's time up to the
///   next one's lies within the band of the column it began with, up to the first edge inside; where
///   columns are no longer than the shortest step of the sequence, it lies within the wider of the two.
/// - A steady tone that has at least kFewestColumnsPerCycle columns a cycle is drawn as its waveform:
///   maximum and minimum are the same point of the sine, up to one column before the column's time.
struct WaveformOverview {
    OverviewSpan span;

    /// How far apart the columns really are: span.length / span.columns, or longer by so little (less
    /// than 2^-22 of itself, and a tick) that the last column stands less than a third of a column late.
    zelmediatypes::FrameRate columnLength;

    std::vector<ChannelOverview> channels;  ///< in the plug-in's order
};

/// Fewer points than this trace a tone with a false beat, and fewer than two a false tone.
inline constexpr int kFewestColumnsPerCycle = 8;

/// The most columns of one overview.
inline constexpr int kMostOverviewColumns = 65536;

/// The shortest column, 1 microsecond: many columns a sample at any sample rate of sound.
inline constexpr zelmediatypes::TickTime kShortestColumn{zelmediatypes::kTicksPerSecond / 1000000};

/// Asks the plug-in for the peaks of `span`, in one request. Throws UsageError (option "duration") for a
/// length below kShortestColumn a column, Error for fewer than 1 or more than kMostOverviewColumns
/// columns or when the plug-in refuses. Any thread.
[[nodiscard]] LINEUP_API WaveformOverview ReadOverview(const Clip& clip, const OverviewSpan& span);

}  // namespace lineup
