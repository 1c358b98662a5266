#include "Host/Lineup/Check/Sound/Follow/LowTone.h"

#include "Host/Lineup/Check/Sound/Signal/Clusters.h"
#include "Host/Lineup/Check/Sound/Signal/PhaseLine.h"
#include "Host/Lineup/Check/Sound/Signal/Turn.h"

#include <cmath>
#include <utility>
#include <vector>

namespace lineup::sound {

namespace {

constexpr double kOtherPitchHz = 0.3;   // beyond the error of measuring
constexpr double kStraightPhase = 0.5;  // radians r.m.s.
constexpr double kLowToneLoud = 0.3;    // of what was sent
constexpr double kPitchStepHz = 0.1;    // pitches that are written down are multiples of this
constexpr double kSameLowTone = 1e-4;   // relative

bool IsTone(double frequency, double sent) {
    return std::abs(frequency / sent - 1) < kSameLowTone;
}

// How far off the pitch of a slot's tone is, as each input has it.
void AddVotes(const SlotSound& sound, std::size_t tone, double level, std::vector<Vote>& votes) {
    for (const InputSlot& input : sound.inputs) {
        const auto line = FitPhaseLine(input.gains[tone], input.there, sound.step);
        if (line && line->amplitude > kLowToneLoud * level && line->scatter < kStraightPhase) {
            votes.push_back({line->slope / kTurn, line->amplitude * line->amplitude * line->seconds});
        }
    }
}

}  // namespace

std::optional<LowTone> FindOtherLowTone(const History& history, const Reference& reference, const Survey& survey) {
    if (survey.placing.tempo != survey.placing.pitch) {
        return std::nullopt;  // the seams of retiming turn the phase of a low tone as another pitch does
    }
    SlotMeter meter(history, reference);
    meter.Place(survey.placing, survey.Delays());
    double frequency = 0;
    std::vector<Vote> votes;
    for (const SlotNumber& number : survey.slots) {
        const std::vector<RefTone>& tones = reference.slots[number.slot].tones;
        if (!tones.empty() && tones.front().frequency < kLowTone) {
            frequency = tones.front().frequency;
            AddVotes(meter.Measure(number), 0, reference.Level(), votes);
        }
    }
    const double off = WeightedMedian(std::move(votes));
    if (std::abs(off) < kOtherPitchHz) {
        return std::nullopt;
    }
    const double found = frequency + off / survey.placing.pitch;
    return LowTone{frequency, std::round(found / kPitchStepHz) * kPitchStepHz};
}

Reference WithLowTone(const Reference& reference, const LowTone& tone) {
    Reference other = reference;
    for (RefSlot& slot : other.slots) {
        for (RefTone& sent : slot.tones) {
            if (IsTone(sent.frequency, tone.sent)) {
                sent.frequency = tone.found;
                sent.floating = true;
            }
        }
    }
    for (RefBurst& burst : other.bursts) {
        burst.frequency = IsTone(burst.frequency, tone.sent) ? tone.found : burst.frequency;
    }
    other.lowTone = tone.found;
    return other;
}

}  // namespace lineup::sound
