#include "Host/Lineup/Check/Sound/Follow/Lanes.h"

#include <algorithm>
#include <cmath>

namespace lineup::sound {

namespace {

// The loudest that is due of a channel between two clip times.
double DuePeak(const Reference& reference, std::size_t channel, double first, double last) {
    double peak = 0;
    const double cycleStart = std::floor(first / reference.cycle) * reference.cycle;
    for (double base = cycleStart; base < last; base += reference.cycle) {
        for (const RefSlot& slot : reference.slots) {
            if (base + slot.start >= last || base + slot.end <= first) {
                continue;
            }
            for (const RefTone& tone : slot.tones) {
                peak = std::max(peak, tone.Amplitude(channel));
            }
        }
    }
    return peak;
}

}  // namespace

Lanes::Lanes(std::size_t inputs, double hopSeconds) : mHopSeconds(hopSeconds), mPeaks(inputs) {}

void Lanes::Advance(const History& history) {
    const std::int64_t end = history.hops.front().End();
    for (; mDone < end; ++mDone) {
        if (mDone % mHopsPerPoint == 0 && mPeaks.front().size() == SoundLanes::kMostPoints) {
            Halve();
        }
        for (std::size_t input = 0; input < mPeaks.size(); ++input) {
            const HopFeatures& hop = history.hops[input][mDone];
            const float peak = std::max(std::abs(hop.least), std::abs(hop.most));
            if (mDone % mHopsPerPoint == 0) {
                mPeaks[input].push_back(peak);
            } else {
                mPeaks[input].back() = std::max(mPeaks[input].back(), peak);
            }
        }
    }
}

void Lanes::Halve() {
    for (std::vector<float>& peaks : mPeaks) {
        for (std::size_t point = 0; point < peaks.size() / 2; ++point) {
            peaks[point] = std::max(peaks[2 * point], peaks[2 * point + 1]);
        }
        peaks.resize(peaks.size() / 2);
    }
    mHopsPerPoint *= 2;
}

SoundLanes Lanes::Draw(const Lineup* lineup, double startSeconds) const {
    SoundLanes lanes{startSeconds, mHopSeconds * static_cast<double>(mHopsPerPoint), mPeaks, {}};
    for (std::size_t input = 0; input < mPeaks.size(); ++input) {
        lanes.expected.emplace_back(mPeaks[input].size());
        if (lineup == nullptr || !lineup->inputs[input].surveyed.arrival.channel) {
            continue;
        }
        const std::size_t channel = *lineup->inputs[input].surveyed.arrival.channel;
        for (std::size_t point = 0; point < mPeaks[input].size(); ++point) {
            const double first = std::max(static_cast<double>(point) * lanes.step, lineup->startsAt);
            const double last = std::min(static_cast<double>(point + 1) * lanes.step, lineup->endsAt);
            if (first < last) {
                lanes.expected[input][point] = static_cast<float>(
                    DuePeak(*lineup->reference, channel, lineup->placing.ToClip(first), lineup->placing.ToClip(last)));
            }
        }
    }
    return lanes;
}

}  // namespace lineup::sound
