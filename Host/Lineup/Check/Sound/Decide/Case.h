#pragma once

#include <lineup/Api.h>
#include <lineup/CheckReport.h>
#include <lineup/CheckSettings.h>
#include "Host/Lineup/Check/Sound/Decide/SoundFindings.h"
#include "Host/Lineup/Check/Sound/Find/Expectation.h"
#include "Host/Lineup/Check/Sound/Follow/Lineup.h"

#include <complex>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace lineup::sound {

/// What the recording says of itself.
struct RecordingFacts {
    double rate = 48000;
    std::optional<int> bits;
    std::optional<bool> lossy;
    double startSeconds = 0;  ///< where looking began: the time of the line-up's second 0
};

/// What the path has added to the tones of an input, or cut off.
struct ShapeOfInput {
    double clipped = 1;    ///< the tops are cut off there, in parts of the tone's amplitude; 1 where they are not
    bool cut = false;      ///< the highest tops are, if only for a moment, as where gain has not yet followed the tone
    double top = 0;        ///< where it is clipped or cut: the height at which, full scale is 1
    double harmonics = 0;  ///< in parts of the tone's power
    double humPower = 0;   ///< mean square
    bool distorted = false;
    std::optional<std::size_t> mains;  ///< which of kMains hums
};

/// A line-up on its way to a verdict: what was found, what was asked for, and what is said of it.
struct Case {
    const Lineup* lineup;
    const CheckSettings* settings;
    const Expectation* expected;
    const RecordingFacts* facts;
    SoundFindings* findings;

    /// The channel that an input should hold, of those that belong to the line-up.
    std::vector<std::optional<std::size_t>> home;
    /// parts[input][channel]: how loud it is there, linear against what was sent.
    std::vector<std::vector<std::complex<double>>> parts;
    /// Inputs that hold a sum of channels: nothing else is said of their channels and levels.
    std::vector<bool> folded;
    /// Inputs where another channel than their own is heard too.
    std::vector<bool> mixed;
    /// What else explains what is heard at an input.
    std::vector<ShapeOfInput> shapes = {};
    LevelChange change = {};
    double wander = 0;      ///< of the speed, relative, r.m.s.
    bool unsteady = false;  ///< the speed wanders: phases say nothing

    [[nodiscard]] const Reference& Sent() const { return *lineup->reference; }
    [[nodiscard]] const Arrival& At(std::size_t input) const { return lineup->inputs[input].surveyed.arrival; }
    [[nodiscard]] std::size_t Inputs() const { return lineup->inputs.size(); }
    [[nodiscard]] std::string ChannelAt(std::size_t input) const;
    [[nodiscard]] double Tolerance(std::string_view name) const { return ToleranceOf(*settings, name); }

    void Note(std::string_view id, std::string text) const;
};

/// Adds a fault of the sound at these inputs; those that are empty are faults of the whole.
CheckFault& AddFault(const Case& check, std::string_view id, const std::vector<std::size_t>& inputs, std::string text);

/// At the start of a sentence: "L (input 1)", "L and R (inputs 1 and 2)", "Input 3".
[[nodiscard]] std::string Who(const Case& check, const std::vector<std::size_t>& inputs);
/// "1", "1 and 2", "1, 2 and 3": inputs as people count them.
[[nodiscard]] std::string InputList(const std::vector<std::size_t>& inputs);
[[nodiscard]] std::string Listed(const std::vector<std::string>& words);

/// The amplitude of the input's tone where it is loudest: its level may have been moved.
[[nodiscard]] double LoudTone(const Case& check, std::size_t input);

/// The channel has a tone as low as hum: what a codec leaves beside it, and what hum leaves of it, lie together.
[[nodiscard]] bool HasLowTone(const Case& check, std::size_t channel);
/// What levels do over time, where nothing else explains it.
[[nodiscard]] LevelChange FindLevelChange(const Case& check);

/// What a lossy codec leaves under an input's tones, in parts of their amplitude: it goes with the tone, does not
/// average out, and may have moved what was measured by as much. 0 where the codec is not lossy.
[[nodiscard]] double CodecNoise(const Case& check, std::size_t input);

/// Whether the channel was due at `input` in what was heard.
[[nodiscard]] bool WasDue(const Case& check, std::size_t channel, std::size_t input);

// What is said about a line-up, each about its own subject.
void DecideSequence(Case& check);
void DecideChannels(Case& check);
/// In place of DecideChannels, of a steady tone, which names none.
void DecideTone(Case& check);
void DecideLevels(Case& check);
void DecideTiming(Case& check);
void DecideQuality(Case& check);
void DecideEvents(Case& check);
/// Before all others: what clipping, harmonics, hum and a wandering speed explain is not named once more.
void FindShapes(Case& check);
void DecideShapes(Case& check);
/// After all others: whether nothing is wrong, or too little was heard to say so.
void DecideVerdict(Case& check);

/// All of these, in their order, after what was measured: fills the findings, but for the lanes.
LINEUP_API void Decide(Case& check);

}  // namespace lineup::sound
