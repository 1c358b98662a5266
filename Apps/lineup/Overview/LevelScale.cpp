#include "Apps/lineup/Overview/LevelScale.h"

#include <lineup/Level.h>

#include <algorithm>
#include <cmath>

namespace cli {

namespace {

constexpr double kHeadroom = 1.2;
constexpr double kQuietestPeak = 1e-6;  // -120 dBFS: what is quieter is drawn as flat as silence
constexpr int kMarkStepDb = 6;

// The largest amplitude there is. What was not written is NaN, which no comparison lets through.
double Peak(const lineup::WaveformOverview& overview) {
    double peak = 0;
    for (const lineup::ChannelOverview& channel : overview.channels) {
        for (const auto* const values : {&channel.maxima, &channel.minima}) {
            for (const float value : *values) {
                const double amplitude = std::abs(static_cast<double>(value));
                peak = amplitude > peak ? amplitude : peak;
            }
        }
    }
    return peak;
}

}  // namespace

std::vector<int> LevelScale::MarksDb(double halfHeight, double spacing) const {
    std::vector<int> marks;
    const auto loudest = static_cast<int>(std::floor(lineup::DbFromGain(top) / kMarkStepDb)) * kMarkStepDb;
    double previous = 2 * halfHeight + spacing;
    for (int levelDb = loudest;; levelDb -= kMarkStepDb) {
        const double offset = lineup::GainFromDb(levelDb) / top * halfHeight;
        if (offset < spacing) {
            return marks;
        }
        if (previous - offset >= spacing) {
            marks.push_back(levelDb);
            previous = offset;
        }
    }
}

LevelScale LevelScale::For(const lineup::WaveformOverview& overview) {
    const double peak = Peak(overview);
    return {peak > 0 ? std::max(peak, kQuietestPeak) * kHeadroom : 1};
}

}  // namespace cli
