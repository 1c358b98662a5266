#include "Host/Lineup/Check/Sound/Measure/SlotLines.h"

#include "Host/Lineup/Check/Sound/Signal/LineSpectrum.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <span>

namespace lineup::sound {

namespace {

constexpr int kMostHarmonic = 5;
constexpr double kBandEdge = 0.42;  // of the narrow rate: up to there it is unchanged
constexpr int kHumLines = 6;
constexpr double kShortestForHum = 0.42;  // s: shorter ones cannot tell 50 from 60 Hz
constexpr double kShortestForLines = 0.18;
constexpr double kLongestLook = 1;  // s

// The samples of the longest stretch of blocks that are there.
std::span<const float> Stretch(const History& history, const SlotSound& sound, std::size_t input) {
    const InputSlot& slot = sound.inputs[input];
    std::size_t bestFirst = 0;
    std::size_t bestCount = 0;
    for (std::size_t first = 0; first < slot.there.size();) {
        std::size_t end = first;
        while (end < slot.there.size() && slot.there[end]) {
            ++end;
        }
        if (end - first > bestCount) {
            bestFirst = first;
            bestCount = end - first;
        }
        first = end + 1;
    }
    const double rate = history.grid.NarrowRate();
    const double begins = slot.firstMiddle + (static_cast<double>(bestFirst) - 0.5) * sound.step;
    const double seconds = std::min(static_cast<double>(bestCount) * sound.step, kLongestLook);
    const SlidingBuffer<float>& narrow = history.narrow[input];
    const std::int64_t first = std::max<std::int64_t>(narrow.First(), std::llround(begins * rate));
    const std::int64_t end = std::min<std::int64_t>(narrow.End(), std::llround((begins + seconds) * rate));
    return end > first ? narrow.Get(first, end) : std::span<const float>();
}

void AddHarmonics(const LineSpectrum& spectrum, double frequency, double rate, LineFindings& lines) {
    const double tone = spectrum.PowerAt(frequency);
    double harmonics = 0;
    double beside = 0;
    for (int n = 2; n <= kMostHarmonic && frequency * n < kBandEdge * rate; ++n) {
        harmonics += spectrum.PowerAt(frequency * n);
        beside += spectrum.PowerAt(frequency * (n - 0.5));
    }
    if (tone > 0) {
        lines.harmonics.Add(harmonics / tone);
        lines.beside.Add(beside / tone);
    }
}

// Whether a tone of the slot, or one of its harmonics, lies too near.
bool IsNearTone(std::span<const RefTone> tones, double pitch, double frequency, double reach) {
    return std::ranges::any_of(tones, [&](const RefTone& tone) {
        const double expected = tone.frequency * pitch;
        const double number = std::max(1.0, std::round(frequency / expected));
        return std::abs(frequency - number * expected) < reach;
    });
}

void AddHum(const LineSpectrum& spectrum, std::span<const RefTone> tones, double pitch, LineFindings& lines) {
    const double reach = spectrum.Reach() + 1;
    for (std::size_t i = 0; i < kMains.size(); ++i) {
        double power = 0;
        double beside = 0;
        double lineCount = 0;
        double besideCount = 0;
        for (int n = 1; n <= kHumLines; ++n) {
            const double line = kMains[i] * n;
            const double between = line + kMains[i] / 2;
            if (!IsNearTone(tones, pitch, line, reach)) {
                power += spectrum.PowerAt(line);
                ++lineCount;
            }
            if (!IsNearTone(tones, pitch, between, reach)) {
                beside += spectrum.PowerAt(between);
                ++besideCount;
            }
        }
        if (lineCount == 0 || besideCount == 0) {
            continue;
        }
        beside *= lineCount / besideCount;
        lines.hum[i].power.Add(power);
        lines.hum[i].beside.Add(beside);
    }
}

}  // namespace

void AddLines(const History& history, const Reference& reference, const SlotSound& sound, double pitch,
              std::size_t input, std::size_t tone, LineFindings& lines) {
    const std::span<const float> samples = Stretch(history, sound, input);
    const double rate = history.grid.NarrowRate();
    const double seconds = static_cast<double>(samples.size()) / rate;
    if (seconds < kShortestForLines) {
        return;
    }
    const LineSpectrum spectrum(samples, rate);
    const std::vector<RefTone>& tones = reference.slots[sound.number.slot].tones;
    if (tone < tones.size() && tones[tone].frequency * pitch > 1.5 * spectrum.Reach()) {
        AddHarmonics(spectrum, tones[tone].frequency * pitch, rate, lines);
    }
    if (seconds > kShortestForHum) {
        AddHum(spectrum, tones, pitch, lines);
    }
}

}  // namespace lineup::sound
