#include "Host/Lineup/Check/Sound/Follow/Presence.h"

#include <algorithm>
#include <cmath>

namespace lineup::sound {

namespace {

constexpr double kOfLoudest = 0.2;  // what is due at an input at least, to be looked for there
constexpr double kLouder = 2.5;     // and its inverse: a tone that is due, louder or softer
constexpr double kClear = 0.5;      // of the tone's power: what may be beside it

bool IsThere(const InputSlot& input, std::size_t tone, std::size_t block, double due) {
    const double amplitude = std::abs(input.gains[tone][block]);
    return input.there[block] && amplitude > due / kLouder && amplitude < due * kLouder &&
           input.blocks[block].residual < kClear * amplitude * amplitude;
}

}  // namespace

Presence PresenceOf(const SlotSound& sound, const DueTones& due) {
    Presence presence;
    const std::size_t slot = sound.number.slot;
    const double least = kOfLoudest * due.Loudest(slot);
    presence.due = due.AnyIn(slot);
    const std::size_t blocks = sound.inputs.front().blocks.size();
    for (std::size_t block = 0; block < blocks; ++block) {
        bool there = false;
        bool present = false;
        for (std::size_t i = 0; i < sound.inputs.size(); ++i) {
            there = there || sound.inputs[i].there[block];
            for (std::size_t tone = 0; tone < sound.inputs[i].gains.size() && !present; ++tone) {
                const double amplitude = due.At(slot, tone, i);
                present = presence.due && amplitude >= least && IsThere(sound.inputs[i], tone, block, amplitude);
            }
        }
        presence.blocks += there ? 1 : 0;
        if (!present) {
            continue;
        }
        const double begins = sound.inputs.front().firstMiddle + (static_cast<double>(block) - 0.5) * sound.step;
        presence.first = presence.present == 0 ? begins : presence.first;
        presence.last = begins + sound.step;
        presence.fromStart = presence.fromStart || block == 0;
        presence.toEnd = block + 1 == blocks;
        ++presence.present;
    }
    return presence;
}

}  // namespace lineup::sound
