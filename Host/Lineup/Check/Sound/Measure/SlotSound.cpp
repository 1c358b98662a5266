#include "Host/Lineup/Check/Sound/Measure/SlotSound.h"

#include "Host/Lineup/Check/Sound/Find/SteadySamples.h"
#include "Host/Lineup/Check/Sound/Signal/Turn.h"

#include <algorithm>
#include <cmath>

namespace lineup::sound {

namespace {

constexpr double kCodedGuard = 0.035;      // s at either end: echoes of a codec
constexpr double kSlotSoundGuard = 0.012;  // s at either end: what filters make ring, channels that are late
constexpr double kShortestBlock = 0.02;    // s
constexpr double kPureBlock = 0.05;        // residual over the square of the amplitude
constexpr double kAtItsLevel = 0.4;        // of the loudest block's amplitude: it may have been moved
constexpr double kRounding = 1e-6;         // s
constexpr double kAroundJump = 0.002;      // s: what the filters make of it
constexpr double kPeriodsInBlock = 4;      // of the lowest tone
constexpr std::int64_t kFilterStart = 64;  // narrow samples: before them the filters have heard of nothing

}  // namespace

SlotNumber NextSlot(const Reference& reference, SlotNumber number) {
    ++number.slot;
    if (number.slot == reference.slots.size()) {
        return {number.cycle + 1, 0};
    }
    return number;
}

SlotNumber SlotBefore(const Reference& reference, SlotNumber number) {
    if (number.slot == 0) {
        return {number.cycle - 1, reference.slots.size() - 1};
    }
    --number.slot;
    return number;
}

std::size_t InputSlot::CountThere() const {
    return static_cast<std::size_t>(std::ranges::count(there, true));
}

void SlotSound::Keep(double first, double last) {
    for (InputSlot& input : inputs) {
        for (std::size_t block = 0; block < input.there.size(); ++block) {
            const double begins = start + (end - start - static_cast<double>(input.there.size()) * step) / 2 +
                                  static_cast<double>(block) * step;
            input.there[block] = input.there[block] && begins >= first - kRounding && begins + step <= last + kRounding;
        }
    }
}

std::optional<std::pair<double, double>> ExtentOfTone(const SlotSound& sound) {
    const InputSlot* loudest = nullptr;
    std::size_t tone = 0;
    double most = 0;
    for (const InputSlot& input : sound.inputs) {
        for (std::size_t m = 0; m < input.gains.size(); ++m) {
            for (std::size_t block = 0; block < input.blocks.size(); ++block) {
                const double amplitude = input.there[block] ? std::abs(input.gains[m][block]) : 0;
                const bool pure = input.blocks[block].residual < kPureBlock * amplitude * amplitude;
                if (pure && amplitude > most) {
                    most = amplitude;
                    loudest = &input;
                    tone = m;
                }
            }
        }
    }
    if (loudest == nullptr) {
        return std::nullopt;
    }
    std::optional<std::size_t> first;
    std::size_t last = 0;
    for (std::size_t block = 0; block < loudest->blocks.size(); ++block) {
        const double amplitude = std::abs(loudest->gains[tone][block]);
        if (loudest->there[block] && amplitude > kAtItsLevel * most &&
            loudest->blocks[block].residual < kPureBlock * amplitude * amplitude) {
            first = first.value_or(block);
            last = block;
        }
    }
    // A block that the tone begins or ends in is left out with those beside it.
    const std::size_t blocks = loudest->blocks.size();
    const double begin = sound.start + (sound.end - sound.start - static_cast<double>(blocks) * sound.step) / 2;
    const std::size_t from = *first == 0 ? 0 : *first + 1;
    const std::size_t to = last + 1 == blocks ? blocks : last;
    return std::pair(begin + static_cast<double>(from) * sound.step, begin + static_cast<double>(to) * sound.step);
}

SlotMeter::SlotMeter(const History& history, const Reference& reference)
    : mHistory(&history), mReference(&reference), mDelays(history.Inputs()) {}

void SlotMeter::Place(const Placing& placing, std::span<const double> delays) {
    if (placing.pitch != mPlacing.pitch) {
        mFits.clear();
    }
    mPlacing = placing;
    mDelays.assign(delays.begin(), delays.end());
}

double SlotMeter::StartOf(const SlotNumber& number) const {
    const double clip = static_cast<double>(number.cycle) * mReference->cycle + mReference->slots[number.slot].start;
    return mPlacing.ToRecording(clip);
}

double SlotMeter::EndOf(const SlotNumber& number) const {
    const double clip = static_cast<double>(number.cycle) * mReference->cycle + mReference->slots[number.slot].end;
    return mPlacing.ToRecording(clip);
}

std::size_t SlotMeter::BlockLength(const RefSlot& slot) const {
    const double lowest = slot.tones.empty() ? 1 / kShortestBlock : slot.tones.front().frequency * mPlacing.pitch;
    const double seconds = std::max(kShortestBlock, kPeriodsInBlock / lowest);
    return static_cast<std::size_t>(std::lround(seconds * mHistory->grid.NarrowRate()));
}

const BlockFit& SlotMeter::FitFor(std::size_t slot) {
    const auto known = mFits.find(slot);
    if (known != mFits.end()) {
        return known->second;
    }
    std::vector<double> omegas;
    for (const RefTone& tone : mReference->slots[slot].tones) {
        omegas.push_back(kTurn * tone.frequency * mPlacing.pitch / mHistory->grid.NarrowRate());
    }
    const std::size_t length = BlockLength(mReference->slots[slot]);
    return mFits.emplace(slot, BlockFit(std::move(omegas), length)).first->second;
}

SlotSound SlotMeter::Measure(const SlotNumber& number) {
    SlotSound sound{number, StartOf(number), EndOf(number), 0, {}};
    const auto length = static_cast<double>(FitFor(number.slot).Length());
    sound.step = length / mHistory->grid.NarrowRate();
    const double guard = mReference->Steady() ? 0
                         : mHistory->lossy    ? kCodedGuard
                                              : kSlotSoundGuard;  // what never ends has no echoes
    const double inside = sound.end - sound.start - 2 * guard;
    const auto blocks = inside < sound.step ? 0 : static_cast<std::size_t>(inside / sound.step + 1e-6);
    sound.inputs.resize(mHistory->Inputs());
    for (std::size_t input = 0; input < sound.inputs.size(); ++input) {
        MeasureInput(sound, input, blocks, sound.inputs[input]);
    }
    return sound;
}

void SlotMeter::MeasureInput(const SlotSound& sound, std::size_t input, std::size_t blocks, InputSlot& into) {
    const BlockFit& fit = FitFor(sound.number.slot);
    const std::vector<RefTone>& tones = mReference->slots[sound.number.slot].tones;
    const double rate = mHistory->grid.NarrowRate();
    const auto length = static_cast<std::int64_t>(fit.Length());
    const double margin = (sound.end - sound.start - static_cast<double>(blocks) * sound.step) / 2;
    const std::int64_t first = std::llround((sound.start + margin + mDelays[input]) * rate);
    const SlidingBuffer<float>& narrow = mHistory->narrow[input];
    into.firstMiddle = (static_cast<double>(first) + static_cast<double>(length - 1) / 2) / rate;
    into.blocks.resize(blocks);
    into.there.resize(blocks);
    into.gains.assign(tones.size(), std::vector<std::complex<double>>(blocks));
    std::vector<std::complex<double>> gains(tones.size());
    for (std::size_t block = 0; block < blocks; ++block) {
        const std::int64_t at = first + static_cast<std::int64_t>(block) * length;
        const double begins = static_cast<double>(at) / rate;
        if (at < std::max(narrow.First(), kFilterStart) || at + length > narrow.End() ||
            mPlacing.JumpsWithin(begins - kAroundJump, begins + sound.step + kAroundJump)) {
            continue;
        }
        into.there[block] = true;
        into.blocks[block] = fit.Fit(SteadySamples(*mHistory, mPlacing, input, at, at + length, mSteady), gains);
        const double middle = into.firstMiddle + static_cast<double>(block) * sound.step - mDelays[input];
        const double from = mPlacing.StartAt(middle + mDelays[input]);
        for (std::size_t m = 0; m < tones.size(); ++m) {
            const double turns = tones[m].frequency * (middle - from) * mPlacing.pitch;
            into.gains[m][block] = gains[m] * std::polar(1.0, -kTurn * (turns - std::floor(turns)));
        }
    }
}

}  // namespace lineup::sound
