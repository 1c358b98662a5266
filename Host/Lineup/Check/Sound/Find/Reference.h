#pragma once

#include <lineup/Api.h>
#include <lineup/BarsAndToneInfo.h>
#include <lineup/Idents.h>

#include <complex>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace lineup {
class Importer;
}

namespace lineup::sound {

/// Below this a short look knows a pitch to some hertz at best, and makers of a sequence do not agree on it.
inline constexpr double kLowTone = 200;  // Hz

/// A tone within a slot: one frequency, and how strongly each channel carries it.
struct RefTone {
    double frequency = 0;                    ///< Hz
    std::vector<std::complex<double>> gain;  ///< a channel: amplitude and phase against sin(2 pi f t), t in clip time
    bool floating = false;  ///< the cycle is not a whole number of its periods: its phase differs from cycle to cycle

    [[nodiscard]] double Amplitude(std::size_t channel) const { return std::abs(gain[channel]); }
};

/// A stretch of the cycle in which no channel's tone begins or ends.
struct RefSlot {
    double start = 0;  ///< s from the start of the cycle
    double end = 0;
    std::vector<RefTone> tones;  ///< those that sound on any channel, lowest first

    [[nodiscard]] double Length() const { return end - start; }
};

/// A channel's tone from where it begins to where it ends.
struct RefBurst {
    std::size_t channel = 0;
    double frequency = 0;
    double on = 0;   ///< s from the start of the cycle, below its length
    double off = 0;  ///< may lie in the next cycle; equal to `on` plus the cycle where the tone never ends
};

/// What is sent: the slots of one cycle, worked out from the samples that the plug-in gives for it.
struct Reference {
    const Ident* ident = nullptr;       ///< null for a steady tone
    std::string name;                   ///< "tone", or the ident's
    double cycle = 0;                   ///< s; of a steady tone the length of its one slot, which repeats
    std::vector<std::string> channels;  ///< names in the order of files
    std::vector<RefSlot> slots;
    std::vector<RefBurst> bursts;
    std::optional<double> lowTone;  ///< Hz: that of another maker's version, where it is not the plug-in's
    bool pitchKnown = true;         ///< false of a steady tone whose pitch is only that which was found
    bool levelKnown = true;         ///< the same of its level

    [[nodiscard]] bool Steady() const { return ident == nullptr; }
    /// The highest amplitude of any tone.
    [[nodiscard]] double Level() const;
    /// All frequencies, lowest first.
    [[nodiscard]] std::vector<double> Frequencies() const;
};

/// The reference of a clip with these settings, asked of the plug-in at a rate that suits.
[[nodiscard]] Reference MakeReference(const std::shared_ptr<const Importer>& importer, const BarsAndToneInfo& settings,
                                      double cycleSeconds);

/// The references of all idents that the plug-in plays.
[[nodiscard]] LINEUP_API std::vector<Reference> MakeIdentReferences(const std::shared_ptr<const Importer>& importer);

}  // namespace lineup::sound
