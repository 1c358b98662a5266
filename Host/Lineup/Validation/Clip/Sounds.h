#pragma once

#include "Host/Lineup/Validation/Examination/TestClip.h"
#include "Host/Lineup/Validation/Probes/Idents.h"
#include "Src/BarsAndToneImporter/BarsAndToneInfo.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace lineup::validation {

/// A kind of clip: its settings, and what is known of its sound.
struct Sound {
    std::string_view name;
    BarsAndToneInfo settings;
    std::size_t channels = 0;       ///< those that audio and peaks write
    double highestFrequencyHz = 0;  ///< of its tones
    double level = 0;               ///< linear gain of its loudest tone
    std::int64_t cycleTicks = 0;    ///< the time after which the sound repeats
    const Ident* ident = nullptr;   ///< the identification sequence; null for a steady tone

    [[nodiscard]] bool IsIdent() const noexcept { return ident != nullptr; }

    /// The note of `channel` at sample `index`, or null when it is silent there. Identification
    /// sequences only.
    [[nodiscard]] const Note* NoteAt(std::size_t channel, std::int64_t index) const;

    /// The samples in one cycle, rounded down.
    [[nodiscard]] std::int64_t CycleSamples() const;
};

/// One of each: steady tones in mono, stereo and 5.1, and every identification sequence.
[[nodiscard]] std::vector<Sound> Sounds(float rateHz = 48000.0F);

/// A clip as its requests take it.
[[nodiscard]] TestClip AsTestClip(std::string name, const BarsAndToneInfo& settings);
[[nodiscard]] TestClip AsTestClip(const Sound& sound);

/// The settings of all these sounds, for the promises of the interface.
[[nodiscard]] std::vector<KnownSettings> KnownClips();

/// The channels that audio of such settings writes, as far as they are known: all of a steady tone, two or
/// six of an identification sequence, 0 of an unknown one.
[[nodiscard]] std::size_t ChannelsWritten(const BarsAndToneInfo& settings);

/// The clip's own channels; 0 when the count is negative as an int.
[[nodiscard]] std::size_t ClipChannels(const BarsAndToneInfo& settings);

/// The settings in a failure's text.
[[nodiscard]] std::string Text(const BarsAndToneInfo& settings);

/// Whether two samples lie within `bound` of each other; never when one of them is NaN.
[[nodiscard]] bool IsNear(double a, double b, double bound);

/// How far two renderings of a sample may stray from each other whose requests started `cycles` tone
/// cycles apart, in linear gain. The phase is counted with 2 pi in single precision, which is 1.7485e-7
/// rad too large, and each sample is rounded to single precision.
[[nodiscard]] double JoinBound(double cycles, double level);

/// The same, for a sample that lies `cyclesFromZero` tone cycles from clip time 0, where double
/// precision is coarser.
[[nodiscard]] double FarBound(double cycles, double cyclesFromZero, double level);

}  // namespace lineup::validation
