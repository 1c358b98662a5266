#pragma once

#include <lineup/Api.h>

#include <array>
#include <cstddef>
#include <cstdint>

namespace lineup::sound {

/// How often a power came up, by its level: a median over hours in a constant amount of memory.
class LINEUP_API LevelTally {
public:
    void Add(double power, double weight = 1);

    [[nodiscard]] bool Empty() const { return mTotal <= 0; }

    /// The level in dB below which `share` of the weight lies, to a tenth of a dB. Empty tallies have none: kLowestDb.
    [[nodiscard]] double QuantileDb(double share) const;

    static constexpr double kLowestDb = -180;

private:
    static constexpr std::size_t kBins = 2200;
    static constexpr double kBinDb = 0.1;

    std::array<float, kBins> mBins{};
    double mTotal = 0;
};

/// Mean, least and most of something.
struct LINEUP_API Spread {
    double count = 0;
    double sum = 0;
    double squares = 0;
    double least = 0;
    double most = 0;

    void Add(double value, double weight = 1);
    [[nodiscard]] double Mean() const { return count > 0 ? sum / count : 0; }
    [[nodiscard]] double Deviation() const;
};

}  // namespace lineup::sound
