#pragma once

#include <lineup/Clip.h>
#include <lineup/SendSettings.h>

#include <cstdint>
#include <vector>

namespace lineup {
inline namespace parts {

/// Sound alone, uncompressed, in packets of RTP.
struct LinearPlan {
    std::vector<int> channels;  ///< the clip's, in the order in which they are sent, as often as there are copies
    int sampleRateHz = 0;
    int packetSamples = 0;
};

/// Throws UsageError when the settings cannot be sent so.
[[nodiscard]] LINEUP_API LinearPlan PlanLinear(const Clip& clip, const SendSettings& settings);

}  // namespace parts
}  // namespace lineup
