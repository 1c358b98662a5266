#include "Apps/studio/Sound/SpeakerMap.h"

#include <lineup/ChannelLayout.h>

#include <algorithm>
#include <array>

namespace studio {

namespace {

constexpr int kSurround = 6;
constexpr float kMinus3Db = 0.70710678F;
constexpr float kHalf = 0.5F;

// In the plug-in's order, as the folding below addresses them.
enum Channel : std::size_t { kL = 0, kR = 1, kLs = 2, kRs = 3, kC = 4 };

}  // namespace

SpeakerMap::SpeakerMap(int clipChannels, int deviceChannels) {
    constexpr std::array kBoth = {0, 0};
    constexpr std::array kFirstTwo = {0, 1};
    if (clipChannels == kSurround && deviceChannels >= kSurround) {
        PassOn(lineup::FindChannelLayout(kSurround)->fileOrder, clipChannels);
    } else if (clipChannels == kSurround && deviceChannels >= 2) {
        FoldSurround();
        mNotice = "5.1 folded down to stereo: C, Ls and Rs at \u22123 dB, no LFE";
    } else if (deviceChannels >= 2) {
        PassOn(clipChannels == 1 ? kBoth : kFirstTwo, clipChannels);
    } else if (clipChannels == 1) {
        PassOn(std::span(kFirstTwo).first(1), clipChannels);
    } else {
        mFeeds = {{{kL, kHalf}, {kR, kHalf}}};
        mNotice = clipChannels == 2 ? "Stereo folded down to mono" : "L and R alone, folded down to mono";
    }
    if (clipChannels > 2 && clipChannels != kSurround) {
        mNotice = "Channels 1 and 2 alone";
    }
}

void SpeakerMap::PassOn(std::span<const int> order, int clipChannels) {
    for (const int channel : order) {
        mFeeds.push_back({{static_cast<std::size_t>(std::min(channel, clipChannels - 1)), 1.0F}});
    }
}

void SpeakerMap::FoldSurround() {
    mFeeds = {{{kL, 1.0F}, {kC, kMinus3Db}, {kLs, kMinus3Db}}, {{kR, 1.0F}, {kC, kMinus3Db}, {kRs, kMinus3Db}}};
}

void SpeakerMap::Mix(std::span<const float* const> channels, std::size_t frames, float* interleaved) const noexcept {
    const std::size_t outputs = mFeeds.size();
    for (std::size_t output = 0; output < outputs; ++output) {
        const std::vector<Feed>& feeds = mFeeds[output];
        const float* const first = channels[feeds.front().channel];
        const float firstGain = feeds.front().gain;
        for (std::size_t i = 0; i < frames; ++i) {
            interleaved[i * outputs + output] = first[i] * firstGain;  // a gain of 1 changes no bit
        }
        for (const Feed& feed : std::span(feeds).subspan(1)) {
            const float* const source = channels[feed.channel];
            for (std::size_t i = 0; i < frames; ++i) {
                interleaved[i * outputs + output] += source[i] * feed.gain;
            }
        }
    }
}

}  // namespace studio
