#include "Host/Lineup/Check/Sound/Follow/Due.h"

#include <algorithm>

namespace lineup::sound {

namespace {

constexpr double kLeftOver = 0.01;    // of the loudest tone of all slots
constexpr double kOneChannel = 0.98;  // likeness: what else it has is of no account

double DueAt(const RefTone& tone, const Cell& cell, const SurveyedInput& input) {
    const Arrival& arrival = input.arrival;
    const bool plain = arrival.channel && arrival.likeness > kOneChannel;
    if (plain || !cell.Seen()) {
        return arrival.channel ? arrival.gain * tone.Amplitude(*arrival.channel) : 0;
    }
    return cell.Amplitude();
}

}  // namespace

DueTones::DueTones(const Reference& reference, const Survey& survey) {
    for (std::size_t slot = 0; slot < reference.slots.size(); ++slot) {
        mAmplitudes.emplace_back();
        const std::vector<RefTone>& tones = reference.slots[slot].tones;
        for (std::size_t tone = 0; tone < tones.size(); ++tone) {
            mAmplitudes[slot].emplace_back();
            for (std::size_t input = 0; input < survey.inputs.size(); ++input) {
                mAmplitudes[slot][tone].push_back(
                    DueAt(tones[tone], survey.cells.At(slot, tone, input), survey.inputs[input]));
            }
        }
    }
}

double DueTones::Loudest(std::size_t slot) const {
    double loudest = 0;
    for (const auto& tone : mAmplitudes[slot]) {
        loudest = std::max(loudest, *std::ranges::max_element(tone));
    }
    return loudest;
}

bool DueTones::AnyIn(std::size_t slot) const {
    double loudest = 0;
    for (std::size_t other = 0; other < mAmplitudes.size(); ++other) {
        loudest = std::max(loudest, Loudest(other));
    }
    return Loudest(slot) > kLeftOver * loudest;
}

std::size_t DueTones::LoudestTone(std::size_t slot, std::size_t input) const {
    const auto& tones = mAmplitudes[slot];
    const auto loudest = std::ranges::max_element(tones, {}, [input](const auto& tone) { return tone[input]; });
    return static_cast<std::size_t>(loudest - tones.begin());
}

}  // namespace lineup::sound
