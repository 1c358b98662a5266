#include "Host/Lineup/Check/Sound/Measure/Cells.h"

#include "Host/Lineup/Check/Sound/Signal/Turn.h"

#include <cmath>

namespace lineup::sound {

Cells::Cells(const Reference& reference, std::size_t inputs) {
    for (const RefSlot& slot : reference.slots) {
        mCells.emplace_back(slot.tones.size(), std::vector<Cell>(inputs));
        std::vector<double>& turns = mTurnsOfCycle.emplace_back();
        for (const RefTone& tone : slot.tones) {
            turns.push_back(tone.floating ? std::remainder(tone.frequency * reference.cycle, 1.0) : 0);
        }
    }
}

void Cells::Add(const SlotSound& sound) {
    auto& slot = mCells[sound.number.slot];
    for (std::size_t tone = 0; tone < slot.size(); ++tone) {
        const double turns = mTurnsOfCycle[sound.number.slot][tone] * static_cast<double>(sound.number.cycle);
        const auto onTop = std::polar(1.0, kTurn * std::remainder(turns, 1.0));
        for (std::size_t input = 0; input < sound.inputs.size(); ++input) {
            const InputSlot& from = sound.inputs[input];
            Cell& cell = slot[tone][input];
            for (std::size_t block = 0; block < from.blocks.size(); ++block) {
                if (!from.there[block]) {
                    continue;
                }
                const std::complex<double> gain = from.gains[tone][block] * onTop;
                cell.blocks += 1;
                cell.sum += gain;
                cell.amplitudes += std::abs(gain);
                cell.energy += std::norm(gain);
                cell.residual += from.blocks[block].residual;
            }
        }
    }
}

}  // namespace lineup::sound
