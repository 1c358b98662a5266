#include <lineup/ChannelLayout.h>

#include <algorithm>
#include <array>

namespace lineup {

namespace {

using namespace std::string_view_literals;

constexpr std::array kMonoChannels = {"M"sv};
constexpr std::array kMonoOrder = {0};

constexpr std::array kStereoChannels = {"L"sv, "R"sv};
constexpr std::array kStereoOrder = {0, 1};

// Files and devices order 5.1 as L, R, C, LFE, Ls, Rs.
constexpr std::array k51Channels = {"L"sv, "R"sv, "Ls"sv, "Rs"sv, "C"sv, "LFE"sv};
constexpr std::array k51Order = {0, 1, 4, 5, 2, 3};

constexpr std::array<ChannelLayout, 3> kLayouts = {{
    {"mono", kMonoChannels, kMonoOrder},
    {"stereo", kStereoChannels, kStereoOrder},
    {"5.1", k51Channels, k51Order},
}};

template <class Predicate>
const ChannelLayout* LayoutWhere(Predicate predicate) {
    const auto* const found = std::ranges::find_if(kLayouts, predicate);
    return found == kLayouts.end() ? nullptr : found;
}

}  // namespace

std::span<const ChannelLayout> ChannelLayouts() {
    return kLayouts;
}

const ChannelLayout* FindChannelLayout(int numChannels) {
    return LayoutWhere([numChannels](const ChannelLayout& layout) {
        return layout.channels.size() == static_cast<std::size_t>(numChannels);
    });
}

const ChannelLayout* FindChannelLayout(std::string_view name) {
    return LayoutWhere([name](const ChannelLayout& layout) { return layout.name == name; });
}

}  // namespace lineup
