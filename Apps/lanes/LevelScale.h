#pragma once

#include <lineup/WaveformOverview.h>

#include <vector>

namespace lanes {

/// How amplitudes are laid out in a lane, up and down from its centre line. The same in every lane.
///
/// Levels stand on a scale of decibels, full scale at the top of every drawing: -60, -18 and 0 dBFS look as different
/// as they are. A wave is drawn linearly, so that a sine looks like a sine, up to a little above its peak; the marks
/// say how high that is.
class LevelScale {
public:
    [[nodiscard]] static LevelScale For(const lineup::WaveformOverview& overview);

    /// From +3 dBFS at a lane's edges down to -66 at its centre.
    [[nodiscard]] static LevelScale Decibels() { return LevelScale(0); }

    /// Up to the amplitude `top`, above 0.
    [[nodiscard]] static LevelScale Linear(double top) { return LevelScale(top); }

    /// Where an amplitude stands: 0 on the centre line, 1 and -1 at a lane's edges; what lies beyond stands there.
    [[nodiscard]] double Height(double amplitude) const;

    /// The levels with room for a name in a lane `halfHeight` high on either side of its centre line, at least
    /// `spacing` from each other: multiples of 6 dBFS, the line-up level -18 before all others.
    [[nodiscard]] std::vector<int> NamedDb(double halfHeight, double spacing) const;

    /// Every multiple of 6 dBFS that stands at least `spacing` from the next one, loudest first.
    [[nodiscard]] std::vector<int> TicksDb(double halfHeight, double spacing) const;

private:
    explicit LevelScale(double top) : mTop(top) {}

    double mTop;  // 0: in decibels
};

}  // namespace lanes
