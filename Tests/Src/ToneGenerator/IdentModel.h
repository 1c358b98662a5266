#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

/// The identification sequences written a second time: what sounds when, in milliseconds of the cycle,
/// and from there sample by sample. Nothing here calls the generator.
namespace model {

enum class Ident { kStereo1000, kStereo400, kMultichannel, kBlits };

inline constexpr Ident kIdents[] = {Ident::kStereo1000, Ident::kStereo400, Ident::kMultichannel, Ident::kBlits};

/// "Stereo1000" and so on, for the names of tests.
[[nodiscard]] std::string Name(Ident ident);

/// The length of one cycle.
[[nodiscard]] std::int64_t CycleTicks(Ident ident);

/// Two or six: the channels from 0 on that the sequence writes.
[[nodiscard]] std::size_t ChannelCount(Ident ident);

struct Request {
    std::int64_t sampleTicks;
    std::int64_t startTicks;
    std::int64_t count;
    bool peakMode = false;
};

/// "start 127008000000, 480 samples 5292000 apart", for failures.
std::ostream& operator<<(std::ostream& out, const Request& request);

/// What the request has to hold: samples[channel][i]. No time of the request may wrap.
[[nodiscard]] std::vector<std::vector<float>> Render(Ident ident, const Request& request);

}  // namespace model
