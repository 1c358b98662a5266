#include "Apps/lanes/LevelScale.h"

#include <lineup/Level.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace lanes {

namespace {

constexpr double kTopDb = 3;  // what is at full scale does not touch the lane's edge
constexpr double kCentreDb = -66;
constexpr double kHeadroom = 1.2;       // of a linear scale
constexpr double kQuietestPeak = 1e-6;  // -120 dBFS: what is quieter is drawn as flat as silence
constexpr int kLineUpDb = -18;
constexpr int kStepDb = 6;

// What was not written is NaN, which no comparison lets through.
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

LevelScale LevelScale::For(const lineup::WaveformOverview& overview) {
    const double peak = Peak(overview);
    return overview.showsWave && peak > 0 ? Linear(std::max(peak, kQuietestPeak) * kHeadroom) : Decibels();
}

double LevelScale::Height(double amplitude) const {
    if (mTop > 0) {
        return std::clamp(amplitude / mTop, -1.0, 1.0);
    }
    const double share = (lineup::DbFromGain(std::abs(amplitude)) - kCentreDb) / (kTopDb - kCentreDb);
    return std::copysign(std::clamp(share, 0.0, 1.0), amplitude);
}

std::vector<int> LevelScale::TicksDb(double halfHeight, double spacing) const {
    const double topDb = mTop > 0 ? lineup::DbFromGain(mTop) : kTopDb;
    std::vector<int> ticks;
    const auto offset = [&](int levelDb) { return Height(lineup::GainFromDb(levelDb)) * halfHeight; };
    for (int levelDb = static_cast<int>(std::floor(topDb / kStepDb)) * kStepDb;
         offset(levelDb) >= spacing && offset(levelDb) - offset(levelDb - kStepDb) >= spacing; levelDb -= kStepDb) {
        ticks.push_back(levelDb);
    }
    return ticks;
}

std::vector<int> LevelScale::NamedDb(double halfHeight, double spacing) const {
    // On a scale of decibels the line-up level first, then every 18 dB, then what fits between.
    static constexpr std::array kPreferredDb = {kLineUpDb, 0, -36, -54, -6, -12, -24, -30, -42, -48, -60};
    std::vector<int> wanted(kPreferredDb.begin(), kPreferredDb.end());
    if (mTop > 0) {
        wanted = TicksDb(halfHeight, 1);
    }
    const auto offset = [&](int levelDb) { return Height(lineup::GainFromDb(levelDb)) * halfHeight; };
    std::vector<int> named;
    for (const int levelDb : wanted) {
        const bool isFree =
            std::ranges::all_of(named, [&](int other) { return std::abs(offset(other) - offset(levelDb)) >= spacing; });
        if (isFree && offset(levelDb) >= spacing / 2) {
            named.push_back(levelDb);
        }
    }
    return named;
}

}  // namespace lanes
