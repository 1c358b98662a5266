#include "Host/Lineup/Check/Sound/Measure/Tune.h"

#include "Host/Lineup/Check/Sound/Signal/PhaseLine.h"

#include <cmath>
#include <numbers>

namespace lineup::sound {

namespace {

constexpr double kTuneLeastAmplitude = 1e-3;  // of the loudest input's: what is left of others' tones says nothing
constexpr double kMostScatter = 0.8;          // radians
constexpr int kRounds = 4;
constexpr double kGoodEnough = 1e-10;

}  // namespace

std::vector<Vote> PitchVotes(const SlotSound& sound, const Reference& reference, double pitch) {
    std::vector<Vote> votes;
    const std::vector<RefTone>& tones = reference.slots[sound.number.slot].tones;
    for (std::size_t m = 0; m < tones.size(); ++m) {
        double loudest = 0;
        std::vector<std::optional<PhaseLine>> lines;
        for (const InputSlot& input : sound.inputs) {
            lines.push_back(FitPhaseLine(input.gains[m], input.there, sound.step));
            loudest = std::max(loudest, lines.back() ? lines.back()->amplitude : 0);
        }
        const double omega = 2 * std::numbers::pi * tones[m].frequency * pitch;
        for (const auto& line : lines) {
            if (line && line->amplitude > 0.1 * loudest && line->amplitude > kTuneLeastAmplitude * reference.Level() &&
                line->scatter < kMostScatter) {
                // A line is known by the cube of its length, and a pitch by what it makes of the phase.
                const double weight = std::pow(line->seconds * omega, 2) * line->seconds * line->amplitude *
                                      line->amplitude / (line->scatter * line->scatter + 1e-10);
                votes.push_back({line->slope / omega, weight});
            }
        }
    }
    return votes;
}

Placing TunePitch(const History& history, const Reference& reference, const Placing& placing,
                  std::span<const double> delays, std::span<const SlotNumber> slots) {
    const bool asFast = placing.tempo == placing.pitch;
    Placing tuned = placing;
    SlotMeter meter(history, reference);
    for (int round = 0; round < kRounds; ++round) {
        meter.Place(tuned, delays);
        std::vector<Vote> votes;
        for (const SlotNumber& number : slots) {
            const std::vector<Vote> more = PitchVotes(meter.Measure(number), reference, tuned.pitch);
            votes.insert(votes.end(), more.begin(), more.end());
        }
        const double off = WeightedMedian(std::move(votes));
        // The turn is about the slots' middle: that is where they were found.
        const double about = slots.empty() ? 0 : meter.StartOf(slots[slots.size() / 2]);
        tuned.pitch *= 1 + off;
        if (asFast) {
            const double clip = tuned.ToClip(about);
            tuned.tempo = tuned.pitch;
            tuned.start += about - clip / tuned.tempo - tuned.StartAt(about);
        }
        if (std::abs(off) < kGoodEnough) {
            break;
        }
    }
    return tuned;
}

}  // namespace lineup::sound
