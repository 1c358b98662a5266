#include "Host/Lineup/Check/Sound/Events/Clicks.h"

#include "Host/Lineup/Check/Sound/Signal/Clusters.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <utility>

namespace lineup::sound {

namespace {

constexpr double kWholeBut = 0.03;    // s: blocks leave out so much at the ends of a slot that is whole
constexpr double kClearOfCut = 0.01;  // s: of one that is not
constexpr float kSameHeight = 0.1F;   // of the swing
constexpr double kClickOverUsual = 4;
constexpr double kLeastClick = 0.01;  // full scale
constexpr double kNearClick = 0.03;   // s

// The sound is as high before a hop as after it.
bool GoesOnAround(const SlidingBuffer<HopFeatures>& hops, std::int64_t hop) {
    constexpr std::int64_t kAway = 2;
    if (hop - kAway < hops.First() || hop + kAway >= hops.End()) {
        return false;
    }
    const HopFeatures& before = hops[hop - kAway];
    const HopFeatures& after = hops[hop + kAway];
    const float height = std::max(before.most - before.least, after.most - after.least);
    return std::abs(before.most - after.most) <= kSameHeight * height &&
           std::abs(before.least - after.least) <= kSameHeight * height;
}

// From where to where to look, s: to the ends of a slot that is whole, for bursts that begin and end there are not as
// high before as after; of one that is cut, where blocks are there at any input.
std::pair<double, double> Heard(const SlotSound& sound) {
    std::pair<double, double> heard(sound.end, sound.start);
    for (const InputSlot& input : sound.inputs) {
        for (std::size_t block = 0; block < input.there.size(); ++block) {
            if (input.there[block]) {
                const double middle = input.firstMiddle + static_cast<double>(block) * sound.step;
                heard.first = std::min(heard.first, middle - sound.step / 2);
                heard.second = std::max(heard.second, middle + sound.step / 2);
            }
        }
    }
    const bool isFromStart = heard.first < sound.start + kWholeBut;
    const bool isToEnd = heard.second > sound.end - kWholeBut;
    return {isFromStart ? sound.start : heard.first + kClearOfCut, isToEnd ? sound.end : heard.second - kClearOfCut};
}

}  // namespace

std::vector<SoundEvent> FindClicks(const History& history, const SlotSound& sound) {
    const auto [begins, ends] = Heard(sound);
    const double hopSeconds = history.grid.HopSeconds();
    std::vector<SoundEvent> clicks;
    for (std::size_t number = 0; number < sound.inputs.size(); ++number) {
        const auto& hops = history.hops[number];
        const auto first = std::max(hops.First(), static_cast<std::int64_t>(std::ceil(begins / hopSeconds)));
        const auto end = std::min(hops.End(), static_cast<std::int64_t>(std::floor(ends / hopSeconds)));
        std::vector<double> peaks;
        for (std::int64_t hop = first; hop < end; ++hop) {
            peaks.push_back(static_cast<double>(hops[hop].highPeak));
        }
        const double usual = MedianOf(std::move(peaks));
        for (std::int64_t hop = first; hop < end; ++hop) {
            const auto peak = static_cast<double>(hops[hop].highPeak);
            if (peak > kClickOverUsual * usual + kLeastClick && GoesOnAround(hops, hop)) {
                clicks.push_back(
                    {SoundEvent::Kind::Click, (static_cast<double>(hop) + 0.5) * hopSeconds, peak, {number}});
            }
        }
    }
    std::vector<SoundEvent> alone;
    std::ranges::copy_if(clicks, std::back_inserter(alone), [&](const SoundEvent& click) {
        return std::ranges::none_of(clicks, [&](const SoundEvent& other) {
            return other.inputs != click.inputs && std::abs(other.at - click.at) < kNearClick;
        });
    });
    return alone;
}

void AddClicks(std::span<const SoundEvent> clicks, std::span<const SoundEvent> known, std::vector<SoundEvent>& events) {
    const auto isNear = [](std::span<const SoundEvent> others, double at) {
        return std::ranges::any_of(others, [at](const SoundEvent& other) {
            const double last = other.at + (other.kind == SoundEvent::Kind::Dropout ? other.amount : 0);
            return other.kind != SoundEvent::Kind::Dip && at > other.at - kNearClick && at < last + kNearClick;
        });
    };
    for (const SoundEvent& click : clicks) {
        if (!isNear(known, click.at) && !isNear(events, click.at)) {
            events.push_back(click);
        }
    }
}

}  // namespace lineup::sound
