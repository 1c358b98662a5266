#pragma once

#include "Host/Lineup/Check/Sound/Find/Find.h"
#include "Host/Lineup/Check/Sound/Find/Reference.h"
#include "Host/Lineup/Check/Sound/Signal/BlockFit.h"
#include "Host/Lineup/Check/Sound/Signal/History.h"

#include <complex>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace lineup::sound {

/// One of a sequence's slots in one of its cycles.
struct SlotNumber {
    std::int64_t cycle = 0;
    std::size_t slot = 0;
};

/// The slot after this one.
[[nodiscard]] SlotNumber NextSlot(const Reference& reference, SlotNumber number);
/// The slot before this one.
[[nodiscard]] SlotNumber SlotBefore(const Reference& reference, SlotNumber number);

/// A slot as it arrives at one input, in blocks. What belongs to a block that is not there is not set.
struct InputSlot {
    std::vector<BlockSound> blocks;
    std::vector<bool> there;  ///< a block; false beyond the ends of the recording
    /// gains[tone][block] against what was sent: exp(i * phase of the tone at the block's middle).
    std::vector<std::vector<std::complex<double>>> gains;
    double firstMiddle = 0;  ///< s: the middle of block 0

    [[nodiscard]] std::size_t CountThere() const;
};

/// A slot as it arrives at all inputs: its middle, without what may still belong to the slots beside it.
struct SlotSound {
    SlotNumber number;
    double start = 0;  ///< s of the recording
    double end = 0;
    double step = 0;  ///< s between blocks
    std::vector<InputSlot> inputs;

    /// Leaves out the blocks that do not lie within [first, last] s, and those that reach across.
    void Keep(double first, double last);
};

/// Where the tones of a slot are at their level: of one that the line-up's start or end cuts, the part that belongs to
/// it. Empty where it has no tone.
[[nodiscard]] std::optional<std::pair<double, double>> ExtentOfTone(const SlotSound& sound);

/// Measures slots.
class SlotMeter {
public:
    /// All must outlive the meter.
    SlotMeter(const History& history, const Reference& reference);

    /// How the clip lies in the recording; `delays[input]` in s come on top.
    void Place(const Placing& placing, std::span<const double> delays);

    [[nodiscard]] const Placing& Where() const { return mPlacing; }
    [[nodiscard]] double Delay(std::size_t input) const { return mDelays[input]; }
    [[nodiscard]] double StartOf(const SlotNumber& number) const;
    [[nodiscard]] double EndOf(const SlotNumber& number) const;

    [[nodiscard]] SlotSound Measure(const SlotNumber& number);

private:
    [[nodiscard]] std::size_t BlockLength(const RefSlot& slot) const;
    const BlockFit& FitFor(std::size_t slot);
    void MeasureInput(const SlotSound& sound, std::size_t input, std::size_t blocks, InputSlot& into);

    const History* mHistory;
    const Reference* mReference;
    Placing mPlacing;
    std::vector<double> mDelays;
    std::vector<float> mSteady;             // samples of one block
    std::map<std::size_t, BlockFit> mFits;  // of slots, at the present pitch
};

}  // namespace lineup::sound
