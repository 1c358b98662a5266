#include "Host/Lineup/Check/Sound/Measure/SlotLines.h"

#include "Host/Lineup/Check/Sound/Find/SteadySamples.h"
#include "Host/Lineup/Check/Sound/Signal/LineSpectrum.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace lineup::sound {

namespace {

constexpr double kBandEdge = 0.42;  // of the narrow rate: up to there it is unchanged
constexpr int kHumLines = 6;
constexpr double kMostMains = 10;         // of its lines are heard
constexpr double kOtherSpeed = 0.005;     // what moves a line of hum by more than half its width
constexpr double kClearOfFolding = 20;    // of harmonics: what those above half the sample rate fold onto
constexpr double kFirstBetween = 325;     // Hz: halfway between lines of 50 Hz, and never at one of 60 Hz
constexpr double kBetweenStep = 550;      // Hz
constexpr double kShortestForHum = 0.42;  // s: shorter ones cannot tell 50 from 60 Hz
constexpr double kShortestForLines = 0.18;
constexpr double kLongestLook = 1;  // s

// The samples of the longest stretch of blocks that are there.
std::span<const float> StretchOf(const History& history, const SlotSound& sound, const Placing& placing,
                                 std::size_t input, std::vector<float>& buffer) {
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
    return end > first ? SteadySamples(history, placing, input, first, end, buffer) : std::span<const float>();
}

// Whether hum of these mains has a line there that may be heard.
bool IsNearHum(double mains, double frequency, double pitch, double reach) {
    for (const double line : {mains, mains * pitch}) {
        const double number = std::round(frequency / line);
        if (number <= kMostMains && std::abs(frequency - number * line) < reach) {
            return true;
        }
    }
    return false;
}

bool IsNearAnyHum(double frequency, double pitch, double reach) {
    return std::ranges::any_of(kMains, [&](double mains) { return IsNearHum(mains, frequency, pitch, reach); });
}

// What `seconds` of the tone of `frequency` hold: the longer the look, the less noise a line has.
void AddHarmonics(const LineSpectrum& spectrum, double seconds, double frequency, double pitch, const Grid& grid,
                  LineFindings& lines) {
    std::vector<double> frequencies = {frequency};
    for (std::size_t i = 0; i < kHarmonics; ++i) {
        const auto n = static_cast<double>(i + 2);
        if (frequency * n < kBandEdge * grid.NarrowRate()) {
            frequencies.push_back(frequency * n);
            frequencies.push_back(frequency * (n - 0.5));
        }
    }
    const std::vector<std::complex<double>> sines = spectrum.SinesAt(frequencies);
    const std::complex<double> fundamental = sines.front();
    const double tone = std::norm(fundamental) / 2;
    if (tone <= 0) {
        return;
    }
    double harmonics = 0;
    std::array<double, kMains.size()> clear{};
    double beside = 0;
    for (std::size_t i = 0; 2 * i + 2 < sines.size(); ++i) {
        const auto n = static_cast<double>(i + 2);
        const std::complex<double> line = sines[2 * i + 1];
        const double between = std::norm(sines[2 * i + 2]) / 2;
        harmonics += std::norm(line) / 2;
        beside += between;
        for (std::size_t mains = 0; mains < kMains.size(); ++mains) {
            const bool isNear = IsNearHum(kMains[mains], frequency * n, pitch, spectrum.Reach() + 1);
            clear[mains] += isNear ? 0 : std::norm(line) / 2;
        }
        if (grid.rate / frequency - n < kClearOfFolding) {
            continue;
        }
        HarmonicTally& tally = lines.harmonic[i];
        tally.sum += seconds * line / fundamental * std::polar(1.0, -(n - 1) * std::arg(fundamental));
        tally.weight += seconds;
        tally.doubts += seconds * seconds * between / tone;
    }
    lines.harmonics.Add(harmonics / tone);
    for (std::size_t mains = 0; mains < kMains.size(); ++mains) {
        lines.clear[mains].Add(clear[mains] / tone);
    }
    lines.beside.Add(beside / tone);
}

// Whether a tone of the slot, or one of its harmonics, lies too near.
bool IsNearTone(std::span<const RefTone> tones, double pitch, double frequency, double reach) {
    return std::ranges::any_of(tones, [&](const RefTone& tone) {
        const double expected = tone.frequency * pitch;
        const double number = std::max(1.0, std::round(frequency / expected));
        return std::abs(frequency - number * expected) < reach;
    });
}

double PowerAtAll(const LineSpectrum& spectrum, std::span<const double> frequencies) {
    double power = 0;
    for (const std::complex<double>& sine : spectrum.SinesAt(frequencies)) {
        power += std::norm(sine) / 2;
    }
    return power;
}

void AddHum(const LineSpectrum& spectrum, std::span<const RefTone> tones, double pitch, double mains, HumTally& hum) {
    const double reach = spectrum.Reach() + 1;
    std::vector<double> lines;
    std::vector<double> between;
    for (int n = 1; n <= kHumLines; ++n) {
        for (const auto& [frequencies, frequency] :
             {std::pair(&lines, mains * n), std::pair(&between, mains * n + mains / 2)}) {
            if (!IsNearTone(tones, pitch, frequency, reach)) {
                frequencies->push_back(frequency);
            }
        }
    }
    if (!lines.empty() && !between.empty()) {
        hum.power.Add(PowerAtAll(spectrum, lines));
        hum.beside.Add(PowerAtAll(spectrum, between) * static_cast<double>(lines.size()) /
                       static_cast<double>(between.size()));
    }
}

// Where neither the tones nor the mains have a line.
void AddFloor(const LineSpectrum& spectrum, std::span<const RefTone> tones, double pitch, double rate,
              LineFindings& lines) {
    const double reach = spectrum.Reach() + 1;
    std::vector<double> frequencies;
    const auto count = static_cast<int>(std::ceil((kBandEdge * rate - kFirstBetween) / kBetweenStep));
    for (int number = 0; number < count; ++number) {
        const double frequency = kFirstBetween + number * kBetweenStep;
        if (!IsNearTone(tones, pitch, frequency, reach) && !IsNearAnyHum(frequency, pitch, reach)) {
            frequencies.push_back(frequency);
        }
    }
    if (!frequencies.empty()) {
        const double power = PowerAtAll(spectrum, frequencies);
        lines.floor.Add(spectrum.NoiseOf(power / static_cast<double>(frequencies.size())));
    }
}

}  // namespace

void AddLines(const History& history, const Reference& reference, const SlotSound& sound, const Placing& placing,
              std::size_t input, std::size_t tone, LineFindings& lines) {
    const double pitch = placing.pitch;
    std::vector<float> buffer;
    const std::span<const float> samples = StretchOf(history, sound, placing, input, buffer);
    const double rate = history.grid.NarrowRate();
    const double seconds = static_cast<double>(samples.size()) / rate;
    if (seconds < kShortestForLines) {
        return;
    }
    const LineSpectrum spectrum(samples, rate);
    const std::vector<RefTone>& tones = reference.slots[sound.number.slot].tones;
    if (tone < tones.size() && tones[tone].frequency * pitch > 1.5 * spectrum.Reach()) {
        AddHarmonics(spectrum, seconds, tones[tone].frequency * pitch, pitch, history.grid, lines);
    }
    if (seconds > kShortestForHum) {
        for (std::size_t i = 0; i < kMains.size(); ++i) {
            AddHum(spectrum, tones, pitch, kMains[i], lines.hum[i]);
            if (std::abs(pitch - 1) > kOtherSpeed) {
                AddHum(spectrum, tones, pitch, kMains[i] * pitch, lines.moved[i]);
            }
        }
    }
    AddFloor(spectrum, tones, pitch, rate, lines);
}

}  // namespace lineup::sound
