#pragma once

#include <lineup/WaveformOverview.h>

#include <vector>

namespace cli {

/// How amplitudes are laid out in a lane.
///
/// The scale is linear in amplitude, so that a sine looks like a sine and -24 dBFS stands half as tall as
/// -18. Line-up levels are an eighth of full scale; a scale that reached up to 0 dBFS would leave them
/// a thin stripe. So it ends a little above the loudest peak of the whole picture, the same in every lane,
/// and carries marks every 6 dB to be read by.
struct LevelScale {
    double top = 1;  ///< the amplitude at a lane's edges, above 0

    /// The levels to mark, in dBFS: the multiples of 6 within the scale, loudest first, that stand at
    /// least `spacing` from the centre line and from each other in a lane `halfHeight` high on either side
    /// of it.
    [[nodiscard]] std::vector<int> MarksDb(double halfHeight, double spacing) const;

    /// The scale for `overview`. One of silence, or without any data, goes up to full scale.
    [[nodiscard]] static LevelScale For(const lineup::WaveformOverview& overview);
};

}  // namespace cli
