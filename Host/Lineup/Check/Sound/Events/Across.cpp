#include "Host/Lineup/Check/Sound/Events/Across.h"

#include <algorithm>
#include <cmath>

namespace lineup::sound {

namespace {

constexpr double kOfSlot = 0.1;       // s from its end
constexpr double kAcrossReach = 0.3;  // s on both sides: a dropout as long as that, blocks to compare with, the guard
constexpr double kSameEvent = 0.008;  // s

const RefTone* Find(const RefSlot& slot, double frequency) {
    const auto found = std::ranges::find(slot.tones, frequency, &RefTone::frequency);
    return found == slot.tones.end() ? nullptr : &*found;
}

bool GoesOn(const RefSlot& slot, const RefSlot& next) {
    return std::ranges::any_of(slot.tones, [&](const RefTone& tone) {
        const RefTone* const after = Find(next, tone.frequency);
        for (std::size_t channel = 0; after != nullptr && channel < tone.gain.size(); ++channel) {
            if (tone.Amplitude(channel) > 0 && after->Amplitude(channel) > 0) {
                return true;
            }
        }
        return false;
    });
}

// Whether a tone is as loud in the last block as in the first, more or less.
bool GoesOnAt(const InputSlot& input) {
    constexpr double kAsLoud = 0.5;
    const auto first = std::ranges::find(input.there, true);
    const auto last = std::find(input.there.rbegin(), input.there.rend(), true);
    return first != input.there.end() && std::ranges::any_of(input.gains, [&](const auto& gains) {
               const double before = std::abs(gains[static_cast<std::size_t>(first - input.there.begin())]);
               const double after = std::abs(gains[static_cast<std::size_t>(input.there.rend() - last) - 1]);
               return std::min(before, after) > kAsLoud * std::max(before, after);
           });
}

}  // namespace

Across::Across(const History& history, const Reference& reference) : mHistory(&history), mReference(reference) {
    for (std::size_t i = 0; i < reference.slots.size(); ++i) {
        const RefSlot& slot = reference.slots[i];
        const RefSlot& next = reference.slots[(i + 1) % reference.slots.size()];
        mGoesOn.push_back(GoesOn(slot, next));
        RefSlot& around = mReference.slots[i];
        around.start = slot.end - std::min(kAcrossReach, slot.Length() / 2);
        around.end = slot.end + std::min(kAcrossReach, next.Length() / 2);
        for (const RefTone& tone : next.tones) {
            if (Find(around, tone.frequency) == nullptr) {
                around.tones.push_back(tone);
            }
        }
        std::ranges::sort(around.tones, {}, &RefTone::frequency);
    }
}

void Across::AddEvents(const SlotMeter& meter, const SlotNumber& number, std::span<const SoundEvent> known,
                       std::vector<SoundEvent>& events) const {
    if (!mGoesOn[number.slot]) {
        return;
    }
    SlotMeter around(*mHistory, mReference);
    std::vector<double> delays;
    for (std::size_t input = 0; input < mHistory->Inputs(); ++input) {
        delays.push_back(meter.Delay(input));
    }
    around.Place(meter.Where(), delays);
    SlotSound sound = around.Measure(number);
    for (InputSlot& input : sound.inputs) {
        if (!GoesOnAt(input)) {
            input.there.assign(input.there.size(), false);
        }
    }
    for (const SoundEvent& event : FindEvents(*mHistory, mReference, around, sound)) {
        // Where another channel leaks, the edge of its tone looks like a click.
        const bool isEdge = event.kind == SoundEvent::Kind::Click || event.kind == SoundEvent::Kind::LevelStep;
        // Inputs whose tone ends here bear no witness; further away the slot's own events have theirs.
        const bool isOfSlot =
            event.kind == SoundEvent::Kind::Jump && std::abs(event.at - meter.EndOf(number)) > kOfSlot;
        if (!isEdge && !isOfSlot && !IsKnown(events, event.at) && !IsKnown(known, event.at)) {
            events.push_back(event);
        }
    }
}

bool IsKnown(std::span<const SoundEvent> events, double at) {
    return std::ranges::any_of(events, [at](const SoundEvent& known) {
        const double end = known.at + (known.kind == SoundEvent::Kind::Dropout ? known.amount : 0);
        return known.kind != SoundEvent::Kind::Dip && at > known.at - kSameEvent && at < end + kSameEvent;
    });
}

}  // namespace lineup::sound
