#include "Host/Lineup/Check/Sound/Signal/Tally.h"

#include <algorithm>
#include <cmath>

namespace lineup::sound {

void LevelTally::Add(double power, double weight) {
    const double db = 10 * std::log10(std::max(power, 1e-30));
    const double bin = std::clamp((db - kLowestDb) / kBinDb, 0.0, static_cast<double>(kBins - 1));
    mBins[static_cast<std::size_t>(bin)] += static_cast<float>(weight);
    mTotal += weight;
}

double LevelTally::QuantileDb(double share) const {
    double sum = 0;
    for (std::size_t bin = 0; bin < kBins && mTotal > 0; ++bin) {
        sum += static_cast<double>(mBins[bin]);
        if (sum >= share * mTotal) {
            return kLowestDb + (static_cast<double>(bin) + 0.5) * kBinDb;
        }
    }
    return kLowestDb;
}

void Spread::Add(double value, double weight) {
    least = count > 0 ? std::min(least, value) : value;
    most = count > 0 ? std::max(most, value) : value;
    count += weight;
    sum += weight * value;
    squares += weight * value * value;
}

double Spread::Deviation() const {
    return count > 0 ? std::sqrt(std::max(0.0, squares / count - Mean() * Mean())) : 0;
}

}  // namespace lineup::sound
