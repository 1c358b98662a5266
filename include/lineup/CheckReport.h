#pragma once

#include <lineup/Api.h>

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// What a check of a recording found. These are the values of its JSON document, one to one; a number that could not
/// be measured is empty.
namespace lineup {

/// How a check of a recording ended.
enum class CheckVerdict : std::uint8_t {
    Right,       ///< "right": the line-up arrived as it was sent
    Faults,      ///< "faults"
    CannotTell,  ///< "cannot-tell": no line-up, too little of one, or nothing to read; a note says which
};

/// The verdict as the document has it.
[[nodiscard]] LINEUP_API std::string_view CheckVerdictName(CheckVerdict verdict);

/// What a fault or a note is about.
enum class CheckPart : std::uint8_t {
    Sound,
    Picture,
    Both,
};

/// The part as the document has it: "sound".
[[nodiscard]] LINEUP_API std::string_view CheckPartName(CheckPart part);

/// A kind of fault. Ids never change; one id may stand for the sound and, in a row of its own, for the picture.
struct CheckFaultKind {
    std::string_view id;  ///< kebab-case
    CheckPart part;
    std::string_view meaning;  ///< one line
    std::string_view unit;     ///< of what was measured; empty where no one number says it
};

/// All kinds of faults, those of the sound first.
[[nodiscard]] LINEUP_API std::span<const CheckFaultKind> CheckFaultKinds();

/// The kind called `id` of that part, or null.
[[nodiscard]] LINEUP_API const CheckFaultKind* FindCheckFaultKind(std::string_view id, CheckPart part);

/// One thing that the path did, by its cause.
struct CheckFault {
    std::string id;  ///< of a CheckFaultKind
    CheckPart part = CheckPart::Sound;
    std::vector<int> inputs;  ///< from 0, ascending
    /// As many as `inputs`: the channels that arrive there; empty where the fault is not one of channels.
    std::vector<std::string> channels;
    std::optional<double> measured;
    std::optional<double> expected;
    std::string unit;
    std::optional<double> at;  ///< its place, s from the start of the recording
    std::string text;          ///< one sentence for a person; inputs count from 1 in it
};

/// What a person should know that is not a fault, or why nothing can be told.
struct CheckNote {
    std::string id;  ///< kebab-case
    CheckPart part = CheckPart::Sound;
    std::string text;
};

/// What arrives at one input.
struct ChannelReport {
    int input = 0;                       ///< from 0
    std::optional<std::string> channel;  ///< "L", "R", "C", "LFE", "Ls", "Rs" or "M"; empty where none arrives
    std::optional<int> polarity;         ///< 1 or -1
    std::optional<double> level;         ///< peak of the tone, dBFS
    std::optional<double> gain;          ///< dB over what was sent
    std::optional<double> delay;       ///< samples of the recording after the median of the channels; below 0 is early
    std::optional<double> noise;       ///< dBFS r.m.s. under the tone
    std::optional<double> distortion;  ///< dB over the tone
    std::optional<double> dc;          ///< full scale is 1
    std::optional<int> effectiveBits;  ///< as many as the samples use
};

struct SpeedReport {
    double ratio = 1;  ///< above 1 where the recording plays too fast
    double ppm = 0;    ///< (ratio - 1) * 1e6
};

/// What a drawing of the sound needs: the level of each input over time. Of long recordings the points lie further
/// apart: there are never more than kMostPoints.
struct SoundLanes {
    static constexpr std::size_t kMostPoints = 4096;

    double start = 0;                          ///< where the first point begins, s from the start of the recording
    double step = 0;                           ///< s between points, 0 where there are none
    std::vector<std::vector<float>> found;     ///< found[input][point], the highest peak of the step, full scale is 1
    std::vector<std::vector<float>> expected;  ///< the same of what was sent; 0 outside of the line-up
};

/// What was found of the sound.
struct SoundReport {
    std::string expected;                 ///< "tone", or the name of an Ident; empty where no line-up was found
    std::optional<double> sampleRate;     ///< Hz, as the recording says
    int inputs = 0;                       ///< channels of all tracks
    std::optional<double> startsAt;       ///< where the line-up begins, s from the start of the recording
    std::optional<double> cycles;         ///< how many of them, with fractions; of a steady tone empty
    std::optional<SpeedReport> speed;     ///< empty where it could not be measured
    std::vector<ChannelReport> channels;  ///< one an input
    SoundLanes lanes;
};

/// Where the card lies in the frame: pixels, and whether it is turned over.
struct CardPlace {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
    bool mirrored = false;
    bool flipped = false;
};

/// What the numbers of a picture are, or are said to be. Empty where it is not known.
struct PictureCodes {
    std::string matrix;     ///< "bt709", "bt601"
    std::string primaries;  ///< of the tags alone
    std::string transfer;   ///< of the tags alone
    std::string range;      ///< "limited", "full"
};

/// The mean of one patch: Y', Cb, Cr as 8-bit codes with fractions.
struct PatchReport {
    std::string name;
    std::vector<double> expected;
    std::vector<double> measured;
    double off = 0;      ///< how far the code is off that is farthest off
    bool isOff = false;  ///< by more than the tolerance of patches
    double left = 0;     ///< where it lies on the card, as fractions of its sides
    double top = 0;
    double right = 0;
    double bottom = 0;
};

/// What the path left of the picture's edges and surfaces. Empty where it could not be measured.
struct PictureQuality {
    std::optional<double> edgeAcross;  ///< how wide edges are, pixels: from side to side
    std::optional<double> edgeDown;    ///< and from top to bottom
    std::optional<double> ringing;     ///< how far luma goes beyond its level beside an edge, % of the step
    std::optional<double> blocking;    ///< share of what changes inside of patches that lies on a grid of 8 pixels, %
    std::optional<double> noise;       ///< in patches, r.m.s., codes
};

/// How sure it is what the numbers of a picture are: what was named, against the next best.
struct PictureExplanation {
    double error = 0;                 ///< r.m.s. of what is left of the patches, codes
    std::string next;                 ///< of others that are as simple, the one that leaves least; empty: there is none
    std::optional<double> nextError;  ///< what that one leaves
};

/// What was found of the picture.
struct PictureReport {
    std::string card;  ///< "hd", "sd"; empty where no card was found
    int width = 0;
    int height = 0;
    int bits = 0;
    PictureCodes codes;                 ///< what the numbers turn out to be
    PictureCodes tags;                  ///< what the file says of them
    std::optional<double> pixelAspect;  ///< a pixel's width to its height, by the file
    std::optional<CardPlace> place;
    PictureQuality quality;
    std::optional<PictureExplanation> explanation;  ///< empty where patches are right, and nothing had to be explained
    std::vector<PatchReport> patches;
};

/// What a check of a recording found.
struct CheckReport {
    std::string source;  ///< as it was given
    CheckVerdict verdict = CheckVerdict::CannotTell;
    std::optional<SoundReport> sound;      ///< empty where the recording has none
    std::optional<PictureReport> picture;  ///< empty where the recording has none, or it was not looked at
    std::vector<CheckFault> faults;
    std::vector<CheckNote> notes;
};

}  // namespace lineup
