#include "Host/Lineup/Export/Formats/SoundNames.h"

#include <algorithm>
#include <array>

namespace lineup {
inline namespace parts {

namespace {

constexpr std::string_view kMono = "mono";
constexpr std::string_view kStereo = "stereo";
constexpr std::string_view kSide = "5.1(side)";

/// FFmpeg's names of single channels. QuickTime's left and right surround are what FFmpeg calls the back.
struct ChannelLabel {
    std::string_view channel;
    std::string_view layout;
};
constexpr std::array<ChannelLabel, 6> kChannelLabels = {
    {{"L", "FL"}, {"R", "FR"}, {"C", "FC"}, {"LFE", "LFE"}, {"Ls", "BL"}, {"Rs", "BR"}}};

}  // namespace

std::string_view SampleFormatName(SampleFormat format) {
    switch (format) {
        case SampleFormat::S16:
            return "s16";
        case SampleFormat::S24:
            return "s24";
        case SampleFormat::S32:
            return "s32";
        case SampleFormat::F32:
            break;
    }
    return "f32";
}

std::string LayoutOfAll(const AudioEncoding& encoding, std::size_t channels) {
    if (channels > 2) {
        return std::string(encoding.surroundLayout);
    }
    return std::string(channels == 2 ? kStereo : kMono);
}

std::string LabelOfAll(const Container& container, const AudioEncoding& encoding, std::size_t channels) {
    return container.namesChannels && channels > 2 ? std::string(kSide) : LayoutOfAll(encoding, channels);
}

std::string LayoutOfOne() {
    return std::string(kMono);
}

std::string LabelOfOne(const Container& container, std::string_view channel) {
    const auto* const label = std::ranges::find(kChannelLabels, channel, &ChannelLabel::channel);
    return std::string(container.namesChannels && label != kChannelLabels.end() ? label->layout : kMono);
}

}  // namespace parts
}  // namespace lineup
