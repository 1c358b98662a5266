#include "Host/Lineup/Send/LinearPlan.h"

#include <lineup/ChannelLayout.h>
#include <lineup/UsageError.h>
#include "Host/Lineup/Export/Plan/CheckExport.h"
#include "Host/Lineup/Send/Output/StreamUrl.h"
#include "Host/Lineup/Send/Sound/LinearCoder.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <ranges>
#include <string>
#include <vector>

namespace lineup {
inline namespace parts {

namespace {

constexpr int kMostCopies = 32;

// What fits into a packet of the network behind the heads of IPv6, UDP and RTP.
std::size_t LargestPayload(const std::string& target) {
    constexpr std::size_t kHeads = 40 + 8 + 12;
    constexpr std::size_t kUsualMtu = 1500;
    constexpr std::size_t kLargestMtu = 65'000;
    const StreamUrl url = ParseStreamUrl(target);
    const auto given = url.options.find("mtu");
    if (given == url.options.end()) {
        return kUsualMtu - kHeads;
    }
    const std::string& text = given->second;
    std::size_t mtu = 0;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), mtu);
    if (error != std::errc() || *stop != '\0' || mtu < kUsualMtu || mtu > kLargestMtu) {
        throw UsageError("output", "mtu=" + text, fmt::format("must be from {} to {} bytes", kUsualMtu, kLargestMtu));
    }
    return mtu - kHeads;
}

}  // namespace

LinearPlan PlanLinear(const Clip& clip, const SendSettings& settings) {
    const std::vector<std::string> targets = TargetsOf(settings);
    if (settings.pipe || !std::ranges::all_of(targets, [](const auto& target) { return SchemeOf(target) == "rtp"; })) {
        throw UsageError("format", "l24", "is for rtp:// alone");
    }
    constexpr std::int64_t kUsASecond = 1'000'000;
    const ChannelLayout& layout = CheckChannels(clip);
    LinearPlan plan;
    if (settings.copies < 1 || settings.copies > kMostCopies) {
        throw UsageError("copies", fmt::format("{}", settings.copies),
                         fmt::format("must be from 1 to {}", kMostCopies));
    }
    for (int copy = 0; copy < settings.copies; ++copy) {
        plan.channels.insert(plan.channels.end(), layout.fileOrder.begin(), layout.fileOrder.end());
    }
    const std::size_t mostBytes = std::ranges::min(targets | std::views::transform(LargestPayload));
    plan.sampleRateHz = CheckSampleRate({}, {}, clip.SampleRate());
    const std::int64_t scaled = std::int64_t{settings.packetUs} * plan.sampleRateHz;
    const auto bytes = static_cast<std::size_t>(scaled / kUsASecond) * plan.channels.size() * LinearCoder::kSampleBytes;
    if (settings.packetUs < 1 || scaled % kUsASecond != 0 || bytes > mostBytes) {
        throw UsageError(
            "packet-time", fmt::format("{} us", settings.packetUs),
            fmt::format("is {} bytes of {} channels; it must be whole samples, such as 1 or 0.125 ms at 48 kHz, and {} "
                        "bytes at most, unless the URL says of a network with larger packets: ?mtu=9000",
                        bytes, plan.channels.size(), mostBytes));
    }
    plan.packetSamples = static_cast<int>(scaled / kUsASecond);
    return plan;
}

}  // namespace parts
}  // namespace lineup
