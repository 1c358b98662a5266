#pragma once

#include "Host/Lineup/Check/Sound/Measure/SlotSound.h"

#include <complex>
#include <cstddef>
#include <vector>

namespace lineup::sound {

/// A tone of a slot at one input, over all cycles that were measured.
struct Cell {
    double blocks = 0;
    std::complex<double> sum;  ///< of the gains of all blocks: what keeps its phase adds up
    double amplitudes = 0;     ///< the sum of their amplitudes
    double energy = 0;         ///< the sum of their squares
    double residual = 0;       ///< the sum of the residual's mean squares

    [[nodiscard]] bool Seen() const { return blocks > 0; }
    [[nodiscard]] std::complex<double> Mean() const { return blocks > 0 ? sum / blocks : sum; }
    [[nodiscard]] double Amplitude() const { return blocks > 0 ? amplitudes / blocks : 0; }
};

/// The cells of all slots, tones and inputs.
class Cells {
public:
    Cells(const Reference& reference, std::size_t inputs);

    /// Adds the blocks of a slot that are there.
    void Add(const SlotSound& sound);

    [[nodiscard]] const Cell& At(std::size_t slot, std::size_t tone, std::size_t input) const {
        return mCells[slot][tone][input];
    }

private:
    std::vector<std::vector<std::vector<Cell>>> mCells;
    // [slot][tone]: by how many turns each cycle puts back the phase of a tone that begins anew in it.
    std::vector<std::vector<double>> mTurnsOfCycle;
};

}  // namespace lineup::sound
