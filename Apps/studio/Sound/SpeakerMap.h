#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace studio {

/// Which of a clip's channels each channel of a sound device gets, and how loud.
class SpeakerMap {
public:
    /// How a clip of `clipChannels` channels plays on a device that has `deviceChannels`: as it is when the
    /// device has room for it, in the device's order (5.1: L, R, C, LFE, Ls, Rs); a mono clip on both
    /// front speakers; else folded down. A clip that has no known layout plays its first channels.
    SpeakerMap(int clipChannels, int deviceChannels);

    /// The channels that the device is opened with: 1, 2 or 6.
    [[nodiscard]] int Outputs() const noexcept { return static_cast<int>(mFeeds.size()); }

    /// What a person should know of it: "5.1 folded down to stereo: ...". Empty when all plays as it is.
    [[nodiscard]] const std::string& Notice() const noexcept { return mNotice; }

    /// Writes `frames` frames of Outputs() samples each to `interleaved`, from the clip's channels, planar and
    /// in the plug-in's order. A channel that is passed on as it is is copied bit for bit. Never allocates.
    void Mix(std::span<const float* const> channels, std::size_t frames, float* interleaved) const noexcept;

private:
    struct Feed {
        std::size_t channel;
        float gain;
    };

    void PassOn(std::span<const int> order, int clipChannels);
    void FoldSurround();

    std::vector<std::vector<Feed>> mFeeds;  // one list an output
    std::string mNotice;
};

}  // namespace studio
