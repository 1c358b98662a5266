#include "Host/Lineup/Send/LinearPlan.h"

#include <lineup/ChannelLayout.h>
#include <lineup/UsageError.h>
#include "Host/Lineup/Export/Plan/CheckExport.h"
#include "Host/Lineup/Send/Output/StreamUrl.h"
#include "Host/Lineup/Send/Sound/LinearCoder.h"

#include <fmt/format.h>

namespace lineup {
inline namespace parts {

LinearPlan PlanLinear(const Clip& clip, const SendSettings& settings) {
    if (settings.pipe || SchemeOf(settings.target) != "rtp") {
        throw UsageError("format", "l24", "is for rtp:// alone");
    }
    constexpr std::int64_t kUsASecond = 1'000'000;
    constexpr std::size_t kMostBytes = 1440;  // that no network cuts in two
    const ChannelLayout& layout = CheckChannels(clip);
    LinearPlan plan;
    plan.channels.assign(layout.fileOrder.begin(), layout.fileOrder.end());
    plan.sampleRateHz = CheckSampleRate({}, {}, clip.SampleRate());
    const std::int64_t scaled = std::int64_t{settings.packetUs} * plan.sampleRateHz;
    const auto bytes = static_cast<std::size_t>(scaled / kUsASecond) * plan.channels.size() * LinearCoder::kSampleBytes;
    if (settings.packetUs < 1 || scaled % kUsASecond != 0 || bytes > kMostBytes) {
        throw UsageError(
            "packet-time", fmt::format("{} us", settings.packetUs),
            fmt::format("must be whole samples and {} bytes at most: 1 or 0.125 ms at 48 kHz", kMostBytes));
    }
    plan.packetSamples = static_cast<int>(scaled / kUsASecond);
    return plan;
}

}  // namespace parts
}  // namespace lineup
