#pragma once

#include "Host/Lineup/Validation/Probes/HostileNumbers.h"

#include <cstdint>

/// Audio and peak requests that no dialog makes, for tests that ask only that nothing breaks.
namespace test {

using lineup::validation::kHostileFloats;
using lineup::validation::kHostilePositions;

struct HostileRequest {
    BarsAndToneInfo settings;
    std::int64_t position = 0;
    float peakRateHz = 0.0F;
    std::int32_t count = 0;
};

/// A source of hostile requests: the same ones from the same seed.
class HostileRequestSource {
public:
    explicit HostileRequestSource(std::uint64_t seed) : mRandom(seed) {}

    HostileRequest Next() {
        lineup::validation::HostileNumbers any(mRandom);
        return {
            .settings = any.Settings(), .position = any.Position(), .peakRateHz = any.Float(), .count = any.Count()};
    }

private:
    lineup::validation::Random mRandom;
};

}  // namespace test
