#include "Host/Lineup/Check/Sound/Find/Intervals.h"

#include <algorithm>
#include <cmath>

namespace lineup::sound {

namespace {

constexpr double kLongestGap = 1.6;            // s
constexpr double kSameLevel = 1.26;            // a gap's neighbours are as loud as each other, within 2 dB
constexpr double kIntervalsSamePitch = 0.004;  // relative
constexpr double kIntervalsSamePitchHz = 1.5;

void AddOnce(std::vector<Interval>& intervals, const Interval& interval) {
    const bool known = std::ranges::any_of(intervals, [&](const Interval& other) {
        return other.gap == interval.gap && other.frequency == interval.frequency &&
               std::abs(other.start - interval.start) < 1e-3 && std::abs(other.end - interval.end) < 1e-3;
    });
    if (!known) {
        intervals.push_back(interval);
    }
}

bool SameTone(const ToneRun& a, const ToneRun& b) {
    const double reach = std::max(kIntervalsSamePitchHz, kIntervalsSamePitch * a.frequency);
    return a.input == b.input && std::abs(a.frequency - b.frequency) < reach &&
           a.amplitude < b.amplitude * kSameLevel && b.amplitude < a.amplitude * kSameLevel;
}

// The tone that follows `run` after a gap, if one does.
const ToneRun* Next(const ToneRun& run, std::span<const ToneRun> runs) {
    const ToneRun* next = nullptr;
    for (const ToneRun& other : runs) {
        if (SameTone(run, other) && other.on > run.off && other.on < run.off + kLongestGap &&
            (next == nullptr || other.on < next->on)) {
            next = &other;
        }
    }
    return next;
}

}  // namespace

std::vector<Interval> IntervalsOf(const Reference& reference) {
    std::vector<Interval> intervals;
    for (std::size_t i = 0; i < reference.bursts.size(); ++i) {
        const RefBurst& burst = reference.bursts[i];
        const bool endless = burst.off - burst.on >= reference.cycle - 1e-6;
        if (endless) {
            continue;
        }
        AddOnce(intervals, {false, burst.frequency, burst.on, burst.off, 0, 0});
        // The next burst of the same channel and pitch, which may be the same one a cycle later.
        double next = burst.on + reference.cycle;
        for (const RefBurst& other : reference.bursts) {
            if (other.channel == burst.channel && other.frequency == burst.frequency) {
                const double on = other.on < burst.off ? other.on + reference.cycle : other.on;
                next = std::min(next, on);
            }
        }
        if (next - burst.off < kLongestGap) {
            const double wrap = burst.off >= reference.cycle ? reference.cycle : 0;
            AddOnce(intervals, {true, burst.frequency, burst.off - wrap, next - wrap, 0, 0});
        }
    }
    return intervals;
}

std::vector<Interval> IntervalsOf(std::span<const ToneRun> runs) {
    std::vector<Interval> intervals;
    for (const ToneRun& run : runs) {
        if (!run.openStart && !run.openEnd) {
            intervals.push_back({false, run.frequency, run.on, run.off, run.input, 0});
        }
        const ToneRun* const next = run.openEnd ? nullptr : Next(run, runs);
        if (next != nullptr) {
            intervals.push_back(
                {true, run.frequency, run.off, next->on, run.input, std::min(run.Length(), next->Length())});
        }
    }
    return intervals;
}

}  // namespace lineup::sound
