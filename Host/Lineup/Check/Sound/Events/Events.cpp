#include "Host/Lineup/Check/Sound/Events/Events.h"

#include "Host/Lineup/Check/Sound/Events/Zoom.h"
#include "Host/Lineup/Check/Sound/Signal/Clusters.h"
#include "Host/Lineup/Check/Sound/Signal/Turn.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <optional>
#include <utility>

namespace lineup::sound {

namespace {

constexpr double kBadResidual = 2;        // times the usual one
constexpr double kBadCodedResidual = 50;  // the same after a lossy codec, whose noise comes and goes
constexpr double kBadSpread = 12;         // times what usual ones lie apart
constexpr double kBadFloor = 3e-9;        // mean square: 85 dB below full scale
constexpr double kBadOfTone = 3e-6;       // of the tone's power
constexpr double kBadOfCodedTone = 0.05;  // the same after a lossy codec
constexpr double kOtherCodedAmplitude = 0.4;
constexpr double kLeastCodedTurn = 0.3;   // radians
constexpr double kOtherAmplitude = 0.12;  // of the usual one
constexpr double kEventSounds = 1e-4;     // full scale: a tone to compare with
constexpr std::size_t kBlocksBeside = 3;  // that tell what the tone is before and after
constexpr double kClearOfTone = 0.004;    // of the tone: more than its own noise
constexpr double kClearOfNoise = 6;       // times its r.m.s.
constexpr double kClearAtLeast = 2e-4;
constexpr double kClearOfPeak = 0.06;       // of the farthest from the tone: what filters make ring
constexpr double kSurelySilent = 0.01;      // s
constexpr double kShortestSilence = 0.004;  // s
constexpr double kLongestClick = 0.004;     // s
constexpr double kLeastTurn = 0.005;        // radians
constexpr double kLeastStep = 0.01;         // of the amplitude
constexpr double kTimesUsual = 10;
constexpr double kOneEvent = 0.006;     // s: what happens at several inputs within that is one thing
constexpr double kFilterReach = 0.001;  // s

// Blocks [first, end) of an input that are not like the others.
struct Stretch {
    std::size_t first;
    std::size_t end;
};

struct Usual {
    double residual = 0;
    double spread = 0;  // of residuals
    double turn = 0;    // radians: from one block to the next
    double amplitude = 0;
    double zero = 0;       // where the sound lies
    std::size_t tone = 0;  // the loudest
};

// The tone that is loudest anywhere, and the blocks in which it is at its level: silence may take more than half of a
// slot. Where there are too few of those, as of a click, all count.
std::vector<bool> BlocksAtLevel(const InputSlot& input) {
    constexpr double kOfLoudestBlock = 0.5;
    constexpr std::size_t kFewestAtLevel = 3;
    constexpr std::size_t kPartAtLevel = 4;
    std::vector<double> amplitudes(input.blocks.size());
    for (const auto& gains : input.gains) {
        for (std::size_t block = 0; block < amplitudes.size(); ++block) {
            amplitudes[block] = std::max(amplitudes[block], input.there[block] ? std::abs(gains[block]) : 0);
        }
    }
    const double loudest = amplitudes.empty() ? 0 : *std::ranges::max_element(amplitudes);
    std::vector<bool> atLevel;
    for (std::size_t block = 0; block < amplitudes.size(); ++block) {
        atLevel.push_back(input.there[block] && amplitudes[block] > kOfLoudestBlock * loudest);
    }
    const auto count = static_cast<std::size_t>(std::ranges::count(atLevel, true));
    return count < std::max(kFewestAtLevel, input.CountThere() / kPartAtLevel) ? input.there : atLevel;
}

// By how much a tone turns from one block to another, radians.
double TurnBetween(const InputSlot& input, std::size_t tone, std::size_t first, std::size_t second) {
    return std::abs(std::arg(input.gains[tone][second] * std::conj(input.gains[tone][first])));
}

Usual UsualOf(const InputSlot& input) {
    const std::vector<bool> taken = BlocksAtLevel(input);
    const auto median = [&](const auto& value) {
        std::vector<double> values;
        for (std::size_t block = 0; block < input.blocks.size(); ++block) {
            if (taken[block]) {
                values.push_back(value(block));
            }
        }
        return MedianOf(std::move(values));
    };
    Usual usual;
    usual.residual = median([&](std::size_t block) { return input.blocks[block].residual; });
    usual.spread = median([&](std::size_t block) { return std::abs(input.blocks[block].residual - usual.residual); });
    usual.zero = median([&](std::size_t block) { return input.blocks[block].dc; });
    for (std::size_t tone = 0; tone < input.gains.size(); ++tone) {
        const double amplitude = median([&](std::size_t block) { return std::abs(input.gains[tone][block]); });
        if (amplitude > usual.amplitude) {
            usual.amplitude = amplitude;
            usual.tone = tone;
        }
    }
    std::vector<double> turns;
    for (std::size_t block = 1; block < taken.size() && !input.gains.empty(); ++block) {
        if (taken[block - 1] && taken[block]) {
            turns.push_back(TurnBetween(input, usual.tone, block - 1, block));
        }
    }
    usual.turn = MedianOf(std::move(turns));
    return usual;
}

bool IsBad(const InputSlot& input, std::size_t block, const Usual& usual, bool lossy) {
    const double power = usual.amplitude * usual.amplitude;
    const double leastResidual = kBadFloor + (lossy ? kBadOfCodedTone : kBadOfTone) * power;
    const double mostUsual = lossy
                                 ? kBadCodedResidual * usual.residual
                                 : std::max(kBadResidual * usual.residual, usual.residual + kBadSpread * usual.spread);
    const bool torn = input.blocks[block].residual > mostUsual + leastResidual;
    const bool sounds = usual.amplitude > kEventSounds && power > 4 * usual.residual;
    return torn || (sounds && std::abs(std::abs(input.gains[usual.tone][block]) / usual.amplitude - 1) >
                                  (lossy ? kOtherCodedAmplitude : kOtherAmplitude));
}

// Whether the tone is turned between two blocks, and steady on either side of them. What lies over it turns it too, but
// by far less than its own amplitude.
bool TurnsBetween(const InputSlot& input, const Usual& usual, std::size_t first, std::size_t second,
                  const std::vector<bool>& good) {
    constexpr double kClearTurn = 0.04;      // radians
    constexpr double kSteadyBeside = 0.125;  // of the turn
    constexpr double kOverUsualTurn = 8;
    constexpr std::size_t kSteady = 3;  // blocks
    if (usual.amplitude <= kEventSounds || first + 1 < kSteady || second + kSteady > good.size()) {
        return false;
    }
    const double turn = TurnBetween(input, usual.tone, first, second);
    if (turn < std::max({kClearTurn, kOverUsualTurn * usual.turn, std::sqrt(usual.residual) / usual.amplitude})) {
        return false;
    }
    const auto isSteady = [&](std::size_t block, std::size_t beside) {
        return good[block] && good[beside] && TurnBetween(input, usual.tone, block, beside) < kSteadyBeside * turn;
    };
    for (std::size_t away = 1; away < kSteady; ++away) {
        if (!isSteady(first - away, first) || !isSteady(second, second + away)) {
            return false;
        }
    }
    return true;
}

// Blocks in which something happens. Where harmonics or noise lie over the tone, time may jump by a small part of a
// period and leave blocks that are good in themselves.
std::vector<bool> BadBlocks(const InputSlot& input, const Usual& usual, bool lossy) {
    std::vector<bool> bad;
    std::vector<bool> good;
    for (std::size_t block = 0; block < input.blocks.size(); ++block) {
        bad.push_back(input.there[block] && IsBad(input, block, usual, lossy));
        good.push_back(input.there[block] && !bad.back());
    }
    for (std::size_t block = 1; !lossy && block < bad.size(); ++block) {
        bad[block] = bad[block] || (good[block] && TurnsBetween(input, usual, block - 1, block + 1, good));
    }
    return bad;
}

std::vector<Stretch> BadStretches(const std::vector<bool>& bad) {
    std::vector<Stretch> stretches;
    for (std::size_t block = 0; block < bad.size(); ++block) {
        if (!bad[block]) {
            continue;
        }
        if (!stretches.empty() && block <= stretches.back().end + 1) {
            stretches.back().end = block + 1;
        } else {
            stretches.push_back({block, block + 1});
        }
    }
    return stretches;
}

void LeaveOut(const Stretch& stretch, InputSlot& input) {
    std::fill(input.there.begin() + static_cast<std::ptrdiff_t>(stretch.first),
              input.there.begin() + static_cast<std::ptrdiff_t>(stretch.end), false);
}

// As the tones sound beside a stretch.
std::optional<Gains> GainsBeside(const InputSlot& input, const Stretch& stretch, bool after, const auto& isGood) {
    Gains gains(input.gains.size());
    std::size_t count = 0;
    std::size_t found = 0;
    for (std::size_t away = 1; away <= kBlocksBeside; ++away) {
        const std::size_t block = after ? stretch.end + away - 1 : stretch.first - away;
        if (block >= input.blocks.size() || !isGood(block)) {
            break;
        }
        ++found;
        // The nearest one has something of what rings; it counts where it is the only one.
        if (away == 2) {
            std::ranges::fill(gains, std::complex<double>());
            count = 0;
        }
        for (std::size_t tone = 0; tone < gains.size(); ++tone) {
            gains[tone] += input.gains[tone][block];
        }
        ++count;
    }
    for (auto& gain : gains) {
        gain /= static_cast<double>(std::max<std::size_t>(count, 1));
    }
    return found == 0 ? std::nullopt : std::optional(gains);
}

// What happened between a tone before and the same tone after.
std::optional<SoundEvent> NameIt(const Zoom& zoom, const Usual& usual, const Gains& before, const Gains& after,
                                 double frequency, bool lossy) {
    const double farthest = std::min(zoom.FarthestFrom(before), zoom.FarthestFrom(after));
    const double clear = std::max({kClearOfNoise * std::sqrt(usual.residual), kClearOfTone * usual.amplitude,
                                   kClearAtLeast, kClearOfPeak * farthest});
    const auto begins = zoom.Departs(before, clear, false);
    const auto ends = zoom.Departs(after, clear, true);
    if (!begins || !ends) {
        return std::nullopt;
    }
    const double length = *ends - *begins;
    const double middle = (*begins + *ends) / 2;
    const bool sounds = usual.amplitude > kEventSounds && usual.amplitude * usual.amplitude > usual.residual;
    if (!sounds) {
        // A tone that stops or starts in the midst of a slot rings for as long as a click.
        double loudest = 0;
        for (std::size_t tone = 0; tone < before.size(); ++tone) {
            loudest = std::max({loudest, std::abs(before[tone]), std::abs(after[tone])});
        }
        if (loudest > std::max(kEventSounds, kTimesUsual * usual.amplitude)) {
            return std::nullopt;
        }
        return length < kLongestClick
                   ? std::optional(SoundEvent{SoundEvent::Kind::Click, middle, zoom.FarthestFrom(before), {}})
                   : std::nullopt;
    }
    const double tonePower = usual.amplitude * usual.amplitude / 2;
    if (length > kShortestSilence &&
        zoom.PowerWithin(*begins + kFilterReach, *ends - kFilterReach) < kSilentOfTone * kSilentOfTone * tonePower) {
        return SoundEvent{SoundEvent::Kind::Dropout, *begins, length, {}};
    }
    const std::complex<double> change = after[usual.tone] / before[usual.tone];
    const double doubt = std::sqrt(usual.residual) / usual.amplitude;
    if (std::abs(std::arg(change)) > std::max(lossy ? kLeastCodedTurn : kLeastTurn, doubt)) {
        const double lost = std::arg(change) / (kTurn * frequency);
        return SoundEvent{SoundEvent::Kind::Jump, middle, lost, {}, {{lost, 1 / frequency}}};
    }
    if (std::abs(std::abs(change) - 1) > std::max(kLeastStep, doubt)) {
        return SoundEvent{SoundEvent::Kind::LevelStep, middle, 20 * std::log10(std::abs(change)), {}};
    }
    if (const auto gain = zoom.GainWithin(before, *begins, *ends, 1 / frequency)) {
        return SoundEvent{SoundEvent::Kind::Dip, *begins, 20 * std::log10(*gain), {}};
    }
    if (length < kLongestClick) {
        return SoundEvent{SoundEvent::Kind::Click, middle, zoom.FarthestFrom(before), {}};
    }
    return SoundEvent{SoundEvent::Kind::Dropout, *begins, length, {}};
}

// Where time jumps though no sample stands out: a block that it jumps in has some of the tone before, and the rest of
// the tone after it. Empty where the tone goes on as it was.
std::optional<SoundEvent> FindTurn(const InputSlot& input, const Stretch& stretch, const Usual& usual,
                                   const std::vector<bool>& good, double step, double frequency) {
    if (stretch.first == 0 || !TurnsBetween(input, usual, stretch.first - 1, stretch.end, good)) {
        return std::nullopt;
    }
    const std::complex<double> before = input.gains[usual.tone][stretch.first - 1];
    const std::complex<double> after = input.gains[usual.tone][stretch.end];
    double at = input.firstMiddle + (static_cast<double>(stretch.first) - 0.5) * step;
    for (std::size_t block = stretch.first; block < stretch.end; ++block) {
        const std::complex<double> ofBefore = (input.gains[usual.tone][block] - after) / (before - after);
        at += std::clamp(ofBefore.real(), 0.0, 1.0) * step;
    }
    const double lost = std::arg(after / before) / (kTurn * frequency);
    return SoundEvent{SoundEvent::Kind::Jump, at, lost, {}, {{lost, 1 / frequency}}};
}

// A tone that stops and comes back, at whatever level, before its slot ends. A channel that begins late, or ends early,
// does not come back.
std::optional<SoundEvent> FindSilence(const Zoom& zoom, const Usual& usual, double frequency) {
    if (usual.amplitude < kEventSounds || frequency <= 0) {
        return std::nullopt;
    }
    const auto silence = zoom.SilenceWithin(usual.amplitude, frequency);
    if (!silence || silence->second - silence->first < std::max(kSurelySilent, 2 * kSilenceWindow / frequency)) {
        return std::nullopt;
    }
    return SoundEvent{SoundEvent::Kind::Dropout, silence->first, silence->second - silence->first, {}};
}

// What happens at one place is one thing, at all inputs that have it; where one says more than another, that counts.
void AddEvent(const SoundEvent& event, std::size_t input, std::vector<SoundEvent>& events) {
    for (SoundEvent& known : events) {
        const bool isNear = std::abs(known.at - event.at) < kOneEvent ||
                            (known.kind == SoundEvent::Kind::Dropout && event.at > known.at &&
                             event.at < known.at + known.amount + kOneEvent);
        // Gain goes down at one input for what happens at another.
        const bool areAlike = (known.kind == SoundEvent::Kind::Dip) == (event.kind == SoundEvent::Kind::Dip);
        if (isNear && areAlike) {
            known.inputs.push_back(input);
            if (event.kind < known.kind) {
                known.kind = event.kind;
                known.at = event.at;
                known.amount = event.amount;
            }
            known.phases.insert(known.phases.end(), event.phases.begin(), event.phases.end());
            return;
        }
    }
    events.push_back(event);
    events.back().inputs = {input};
}

// Time jumps for all that sounds. Where half of the inputs with the same tone go on as they were, something was done to
// the others.
bool IsDenied(const SoundEvent& event, const std::vector<std::optional<std::size_t>>& tones) {
    if (event.kind != SoundEvent::Kind::Jump) {
        return false;
    }
    std::ptrdiff_t others = 0;
    for (std::size_t input = 0; input < tones.size(); ++input) {
        const bool hasIt = std::ranges::find(event.inputs, input) != event.inputs.end();
        const bool hasTone = tones[input] && std::ranges::any_of(event.inputs, [&](std::size_t other) {
                                 return tones[other] == tones[input];
                             });
        others += !hasIt && hasTone ? 1 : 0;
    }
    return others > 0 && others >= static_cast<std::ptrdiff_t>(event.inputs.size());
}

}  // namespace

std::vector<SoundEvent> FindEvents(const History& history, const Reference& reference, const SlotMeter& meter,
                                   SlotSound& sound) {
    std::vector<SoundEvent> events;
    std::vector<std::optional<std::size_t>> tones(sound.inputs.size());  // the loudest of those that sound
    const double pitch = meter.Where().pitch;
    for (std::size_t number = 0; number < sound.inputs.size(); ++number) {
        InputSlot& input = sound.inputs[number];
        const Usual usual = UsualOf(input);
        if (usual.amplitude > kEventSounds && usual.amplitude * usual.amplitude > usual.residual) {
            tones[number] = usual.tone;
        }
        const std::vector<bool> bad = BadBlocks(input, usual, history.lossy);
        const std::vector<Stretch> stretches = BadStretches(bad);
        std::vector<bool> good;
        std::ranges::transform(input.there, bad, std::back_inserter(good),
                               [](bool there, bool isBad) { return there && !isBad; });
        Zoom zoom(history, reference, meter, sound, number, usual.zero);
        for (const Stretch& stretch : stretches) {
            const auto isGood = [&](std::size_t block) { return good[block]; };
            const auto before = GainsBeside(input, stretch, false, isGood);
            const auto after = GainsBeside(input, stretch, true, isGood);
            const double frequency =
                input.gains.empty() ? 0 : reference.slots[sound.number.slot].tones[usual.tone].frequency * pitch;
            const double first = input.firstMiddle + (static_cast<double>(stretch.first) - 1.5) * sound.step;
            const double end = input.firstMiddle + (static_cast<double>(stretch.end) + 0.5) * sound.step;
            zoom.Load(std::max(first, sound.start), std::min(end, sound.end));
            // Of one that reaches an end of the slot, silence within alone is told: the sequence itself may begin or
            // end there.
            auto event = before && after ? NameIt(zoom, usual, *before, *after, frequency, history.lossy)
                         : before        ? FindSilence(zoom, usual, frequency)
                                         : std::nullopt;
            if (!event && !history.lossy) {
                event = FindTurn(input, stretch, usual, good, sound.step, frequency);
            }
            if (event) {
                AddEvent(*event, number, events);
            }
            LeaveOut(stretch, input);
        }
    }
    std::erase_if(events, [&tones](const SoundEvent& event) { return IsDenied(event, tones); });
    return events;
}

void LeaveOutDamage(const History& history, SlotSound& sound) {
    for (InputSlot& input : sound.inputs) {
        for (const Stretch& stretch : BadStretches(BadBlocks(input, UsualOf(input), history.lossy))) {
            LeaveOut(stretch, input);
        }
    }
}

}  // namespace lineup::sound
