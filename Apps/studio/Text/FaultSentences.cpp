#include "Apps/studio/Text/FaultSentences.h"

#include "Apps/studio/Text/PatternTable.h"
#include "Apps/studio/Text/ProblemPatterns.h"

#include <array>
#include <optional>

namespace studio {

namespace {

// What a check says, with %1, %2, ... for what differs. The first that fits is taken.
constexpr std::array kSentences = {
    QT_TRANSLATE_NOOP("Fault", "There are no pictures to find a card in."),
    QT_TRANSLATE_NOOP("Fault", "There is no card in the picture, where the %1 card is due."),
    QT_TRANSLATE_NOOP("Fault", "The pictures are of a kind whose codes cannot be read: %1."),
    QT_TRANSLATE_NOOP("Fault", "Black lies at %1 %: NTSC's setup of 7.5 %."),
    QT_TRANSLATE_NOOP("Fault", "R'G'B' was encoded by sRGB's curve once too often."),
    QT_TRANSLATE_NOOP("Fault", "R'G'B' was decoded by sRGB's curve: it is linear."),
    QT_TRANSLATE_NOOP("Fault", "The range was squeezed to a limited one twice too often."),
    QT_TRANSLATE_NOOP("Fault", "Patches are off by %1 codes more, r.m.s., than what is named explains."),
    QT_TRANSLATE_NOOP("Fault", "Another explanation fits the patches as well: %1."),
    QT_TRANSLATE_NOOP("Fault", "The recording has %1 channels more than the %2 that are looked at."),
    QT_TRANSLATE_NOOP("Fault", "Track %1 was converted from %2 Hz to %3 Hz, the rate of the first."),
    QT_TRANSLATE_NOOP("Fault", "From %1 s on %2 s cannot be read: %3."),
    QT_TRANSLATE_NOOP("Fault", "%1 more stretches are damaged."),
    QT_TRANSLATE_NOOP("Fault", "No steady tone was found. A second of one would settle what the path did."),
    QT_TRANSLATE_NOOP("Fault", "The channels are in %1: inputs %2 hold %3."),
    QT_TRANSLATE_NOOP("Fault", "This is %1, not %2."),
    QT_TRANSLATE_NOOP("Fault", "The low tone has %1 Hz: another maker's version."),
    QT_TRANSLATE_NOOP("Fault", "At %1 s %2 samples are lost, or whole periods of the tone more or fewer."),
    QT_TRANSLATE_NOOP("Fault", "At %1 s %2 samples come twice, or whole periods of the tone more or fewer."),
    QT_TRANSLATE_NOOP("Fault", "%1 more dropouts, jumps of time and clicks."),
    QT_TRANSLATE_NOOP("Fault",
                      "What is sent softer arrives %1 dB too loud beside the rest: a limiter or a compressor."),
    QT_TRANSLATE_NOOP("Fault",
                      "What is sent softer arrives %1 dB too soft beside the rest: a limiter or a compressor."),
    QT_TRANSLATE_NOOP("Fault", "The codec leaves more than %1 dBFS of noise under the tones of input %2."),
    QT_TRANSLATE_NOOP("Fault", "The codec leaves more than %1 dBFS of noise under the tones of inputs %2."),
    QT_TRANSLATE_NOOP("Fault", "It plays %1 % too fast: %2, with the pitch kept."),
    QT_TRANSLATE_NOOP("Fault", "It plays %1 % too fast, with the pitch kept."),
    QT_TRANSLATE_NOOP("Fault", "It plays %1 % too slowly: %2, with the pitch kept."),
    QT_TRANSLATE_NOOP("Fault", "It plays %1 % too slowly, with the pitch kept."),
    QT_TRANSLATE_NOOP("Fault", "The recording has only %1 of the %2 channels that were sent."),
    QT_TRANSLATE_NOOP("Fault", "%1 was not due in what was heard; a whole cycle would settle what arrives there."),
    QT_TRANSLATE_NOOP("Fault", "%1 were not due in what was heard; a whole cycle would settle what arrives there."),
    QT_TRANSLATE_NOOP("Fault", "Whether %1 is upside down cannot be told; %2 would settle it."),
    QT_TRANSLATE_NOOP("Fault", "Whether %1 are upside down cannot be told; %2 would settle it."),
    QT_TRANSLATE_NOOP("Fault",
                      "Gain that follows the sound bends tones by itself; whether something else distorts them cannot "
                      "be told. A recording from before the limiter would settle it."),
    QT_TRANSLATE_NOOP("Fault", "There is no sound: %1."),
    QT_TRANSLATE_NOOP("Fault", "There is no sound."),
    QT_TRANSLATE_NOOP("Fault", "The recording cannot be read: %1."),
    QT_TRANSLATE_NOOP("Fault", "The picture shows no card."),
    QT_TRANSLATE_NOOP("Fault",
                      "No identification sequence and no steady tone was found. A whole cycle, or three seconds of "
                      "tone, would settle what the path did."),
    QT_TRANSLATE_NOOP("Fault", "The bars are laid out like the card, and come from another generator."),
    QT_TRANSLATE_NOOP("Fault", "Edges ring: luma goes beyond its level by %1 % of the step."),
    QT_TRANSLATE_NOOP("Fault", "There are blocks: %1 % of what changes inside of patches lies on a grid of 8 pixels."),
    QT_TRANSLATE_NOOP(
        "Fault",
        "The card is %1 times as wide as high where it is shown with pixels of %2 to 1: it is squeezed or stretched."),
    QT_TRANSLATE_NOOP(
        "Fault", "The file says to mirror its pictures where they are shown; the card is described as it is stored."),
    QT_TRANSLATE_NOOP("Fault",
                      "The file says to turn its pictures by %1 degrees clockwise and to mirror them where they are "
                      "shown; the card is described as it is stored."),
    QT_TRANSLATE_NOOP("Fault",
                      "The file says to turn its pictures by %1 degrees clockwise where they are shown; the card is "
                      "described as it is stored."),
    QT_TRANSLATE_NOOP("Fault", "%1 is also heard at input %2, %3 dB below where it belongs."),
    QT_TRANSLATE_NOOP("Fault", "Both inputs hold sums of channels: a fold-down to stereo."),
    QT_TRANSLATE_NOOP("Fault", "Input %1 holds a sum of channels."),
    QT_TRANSLATE_NOOP("Fault", "Inputs %1 hold a sum of channels."),
    QT_TRANSLATE_NOOP("Fault", "%1 is at inputs %2."),
    QT_TRANSLATE_NOOP("Fault", "%1 are swapped (inputs %2)."),
    QT_TRANSLATE_NOOP("Fault", "Input %1 holds %2."),
    QT_TRANSLATE_NOOP("Fault", "Inputs %1 hold %2."),
    QT_TRANSLATE_NOOP("Fault", "%1 is missing (input %2)."),
    QT_TRANSLATE_NOOP("Fault", "%1 are missing (inputs %2)."),
    QT_TRANSLATE_NOOP("Fault", "%1 is missing: the recording has only %2 inputs."),
    QT_TRANSLATE_NOOP("Fault", "%1 are missing: the recording has only %2 inputs."),
    QT_TRANSLATE_NOOP("Fault", "%1 is missing: the recording has only %2 input."),
    QT_TRANSLATE_NOOP("Fault", "%1 are missing: the recording has only %2 input."),
    QT_TRANSLATE_NOOP("Fault", "The tone is missing at input %1."),
    QT_TRANSLATE_NOOP("Fault", "The tone is missing at inputs %1."),
    QT_TRANSLATE_NOOP("Fault", "%1 is upside down."),
    QT_TRANSLATE_NOOP("Fault", "%1 are upside down."),
    QT_TRANSLATE_NOOP("Fault", "At %1 s %2 samples are lost."),
    QT_TRANSLATE_NOOP("Fault", "At %1 s %2 samples come twice."),
    QT_TRANSLATE_NOOP("Fault", "From %1 s on %2 ms are silent or damaged at input %3."),
    QT_TRANSLATE_NOOP("Fault", "From %1 s on %2 ms are silent or damaged at inputs %3."),
    QT_TRANSLATE_NOOP("Fault", "From %1 s on %2 ms are silent or damaged."),
    QT_TRANSLATE_NOOP("Fault", "At %1 s the level goes up by %2 dB for a moment at input %3."),
    QT_TRANSLATE_NOOP("Fault", "At %1 s the level goes up by %2 dB for a moment at inputs %3."),
    QT_TRANSLATE_NOOP("Fault", "At %1 s the level goes up by %2 dB for a moment."),
    QT_TRANSLATE_NOOP("Fault", "At %1 s the level goes down by %2 dB for a moment at input %3."),
    QT_TRANSLATE_NOOP("Fault", "At %1 s the level goes down by %2 dB for a moment at inputs %3."),
    QT_TRANSLATE_NOOP("Fault", "At %1 s the level goes down by %2 dB for a moment."),
    QT_TRANSLATE_NOOP("Fault", "A click at %1 s at input %2."),
    QT_TRANSLATE_NOOP("Fault", "A click at %1 s at inputs %2."),
    QT_TRANSLATE_NOOP("Fault", "A click at %1 s."),
    QT_TRANSLATE_NOOP("Fault", "All channels are %1 dB too loud, as for an alignment level of %2 dBFS."),
    QT_TRANSLATE_NOOP("Fault", "All channels are %1 dB too soft, as for an alignment level of %2 dBFS."),
    QT_TRANSLATE_NOOP("Fault", "All channels are %1 dB too loud."),
    QT_TRANSLATE_NOOP("Fault", "All channels are %1 dB too soft."),
    QT_TRANSLATE_NOOP("Fault", "%1 is %2 dB too loud beside the others."),
    QT_TRANSLATE_NOOP("Fault", "%1 is %2 dB too soft beside the others."),
    QT_TRANSLATE_NOOP("Fault", "%1 are up to %2 dB too loud beside the others."),
    QT_TRANSLATE_NOOP("Fault", "%1 are up to %2 dB too soft beside the others."),
    QT_TRANSLATE_NOOP("Fault", "The level goes up by %1 dB at %2 s."),
    QT_TRANSLATE_NOOP("Fault", "The level goes down by %1 dB at %2 s."),
    QT_TRANSLATE_NOOP("Fault", "The level moves by about %1 dB."),
    QT_TRANSLATE_NOOP("Fault", "Noise of %1 dBFS at input %2."),
    QT_TRANSLATE_NOOP("Fault", "Noise of %1 dBFS at inputs %2."),
    QT_TRANSLATE_NOOP("Fault", "%1 lies off zero by %2 of full scale."),
    QT_TRANSLATE_NOOP("Fault", "%1 lie off zero by %2 of full scale."),
    QT_TRANSLATE_NOOP("Fault", "Only %1 of %2 bits are in use at input %3."),
    QT_TRANSLATE_NOOP("Fault", "Only %1 of %2 bits are in use at inputs %3."),
    QT_TRANSLATE_NOOP("Fault", "%1 is cut off at %2 dBFS."),
    QT_TRANSLATE_NOOP("Fault", "%1 are cut off at %2 dBFS."),
    QT_TRANSLATE_NOOP("Fault", "%1 has harmonics of %2 dB."),
    QT_TRANSLATE_NOOP("Fault", "%1 have harmonics of %2 dB."),
    QT_TRANSLATE_NOOP("Fault", "Hum of %1 Hz, %2 dBFS, at input %3."),
    QT_TRANSLATE_NOOP("Fault", "Hum of %1 Hz, %2 dBFS, at inputs %3."),
    QT_TRANSLATE_NOOP("Fault", "The speed wanders by %1 %."),
    QT_TRANSLATE_NOOP("Fault", "%1 is %2 samples (%3 ms) late."),
    QT_TRANSLATE_NOOP("Fault", "%1 is %2 samples (%3 ms) early."),
    QT_TRANSLATE_NOOP("Fault", "%1 are %2 samples (%3 ms) late."),
    QT_TRANSLATE_NOOP("Fault", "%1 are %2 samples (%3 ms) early."),
    QT_TRANSLATE_NOOP("Fault", "It plays %1 % too fast: %2."),
    QT_TRANSLATE_NOOP("Fault", "It plays %1 % too slowly: %2."),
    QT_TRANSLATE_NOOP("Fault", "It plays %1 % too fast."),
    QT_TRANSLATE_NOOP("Fault", "It plays %1 % too slowly."),
    QT_TRANSLATE_NOOP("Fault", "The numbers are those of %1, where %2 is due."),
    QT_TRANSLATE_NOOP("Fault", "The numbers are those of %1, and the file says %2."),
    QT_TRANSLATE_NOOP("Fault", "The numbers were taken for %1 and converted to %2 once too often."),
    QT_TRANSLATE_NOOP("Fault", "The numbers are of limited range, the file says full."),
    QT_TRANSLATE_NOOP("Fault", "Limited range was stretched to full range."),
    QT_TRANSLATE_NOOP("Fault", "Limited range was stretched to full range twice."),
    QT_TRANSLATE_NOOP("Fault", "The range was squeezed to a limited one once too often."),
    QT_TRANSLATE_NOOP("Fault", "Black lies at %1 %."),
    QT_TRANSLATE_NOOP("Fault", "White lies at %1 %."),
    QT_TRANSLATE_NOOP("Fault", "The middle went through an exponent of %1."),
    QT_TRANSLATE_NOOP("Fault", "What is brighter than code %1 is cut off."),
    QT_TRANSLATE_NOOP("Fault", "What is darker than code %1 is cut off."),
    QT_TRANSLATE_NOOP("Fault", "What lies below black is gone: code %1 is there in place of %2."),
    QT_TRANSLATE_NOOP("Fault", "White is cut off: code %1 is there in place of %2."),
    QT_TRANSLATE_NOOP("Fault", "Cb and Cr are swapped."),
    QT_TRANSLATE_NOOP("Fault", "Red and blue are swapped."),
    QT_TRANSLATE_NOOP("Fault", "There is no colour."),
    QT_TRANSLATE_NOOP("Fault", "Colours have %1 % of their strength."),
    QT_TRANSLATE_NOOP("Fault", "Colours are turned by %1 degrees."),
    QT_TRANSLATE_NOOP("Fault", "Left and right are reversed."),
    QT_TRANSLATE_NOOP("Fault", "Top and bottom are reversed."),
    QT_TRANSLATE_NOOP("Fault", "This is the %1 card, where the %2 card is due."),
    QT_TRANSLATE_NOOP("Fault", "The card lies %1 pixels to the %2 of its place and %3 %4 it."),
    QT_TRANSLATE_NOOP("Fault", "The card does not fill the frame of %1 by %2: it is %3."),
    QT_TRANSLATE_NOOP(
        "Fault", "Up to %1 pixels of the card's edges lie outside of the frame: it is %2, in a frame of %3 by %4."),
    QT_TRANSLATE_NOOP("Fault", "The ramp has no more than %1 bits, in a file of %2."),
    QT_TRANSLATE_NOOP("Fault", "The ramp has bands: %1 codes, where %2 bits have %3 in the same place."),
    QT_TRANSLATE_NOOP("Fault", "Luma has %1, %2 and %3 of red, green and blue, where %4 has %5, %6 and %7."),
    QT_TRANSLATE_NOOP("Fault", "Edges are %1 pixels wide across and %2 down."),
    QT_TRANSLATE_NOOP("Fault", "Colour lies %1 pixels to the right of its luma and %2 below it."),
    QT_TRANSLATE_NOOP("Fault",
                      "Colour is coarser than the file's format: its edges are %1 pixels wide across, %2 down."),
    QT_TRANSLATE_NOOP("Fault", "There is noise of %1 codes in the patches, r.m.s."),
    QT_TRANSLATE_NOOP("Fault", "%1 of %2 frames that were looked at is %3, the first at %4 s."),
    QT_TRANSLATE_NOOP("Fault", "%1 of %2 frames that were looked at are %3, the first at %4 s."),
    QT_TRANSLATE_NOOP("Fault", "The picture begins %1 s after the sound; it lasts %2 s, the sound %3 s."),
    QT_TRANSLATE_NOOP("Fault", "The picture begins %1 s before the sound; it lasts %2 s, the sound %3 s."),
    QT_TRANSLATE_NOOP("Fault", "The sound lasts %1 s, the picture %2 s."),
    QT_TRANSLATE_NOOP("Fault", "At %1 s the recording is damaged: %2."),
    QT_TRANSLATE_NOOP("Fault", "After %1 s nothing more could be read: %2."),
    QT_TRANSLATE_NOOP("Fault", "%1 arrives without its high tones: codecs keep low frequencies alone in that channel."),
    QT_TRANSLATE_NOOP("Fault", "The recording was decoded with rights that decoding does not need: %1."),
};

// And what such a place may hold. The most general comes last.
constexpr std::array kParts = {
    QT_TRANSLATE_NOOP("Fault", "missing"),
    QT_TRANSLATE_NOOP("Fault", "a recording from before it was retimed"),
    QT_TRANSLATE_NOOP("Fault", "a recording from before the codec"),
    QT_TRANSLATE_NOOP("Fault", "more cycles, or a recording from before the codec,"),
    QT_TRANSLATE_NOOP("Fault", "a recording from before the limiter"),
    QT_TRANSLATE_NOOP("Fault", "a whole cycle"),
    QT_TRANSLATE_NOOP("Fault", "tone"),
    QT_TRANSLATE_NOOP("Fault", "film order"),
    QT_TRANSLATE_NOOP("Fault", "the order of AAC"),
    QT_TRANSLATE_NOOP("Fault", "the order of DTS and of the plug-in"),
    QT_TRANSLATE_NOOP("Fault", "SMPTE order with the surround pair before C"),
    QT_TRANSLATE_NOOP("Fault", "%1 kHz played as %2 kHz"),
    QT_TRANSLATE_NOOP("Fault", "pulled up by %1, %2 played as %3 or %4 as %5"),
    QT_TRANSLATE_NOOP("Fault", "pulled down by %1, %2 played as %3 or %4 as %5"),
    QT_TRANSLATE_NOOP("Fault", "%1 frames a second played as %2"),
    QT_TRANSLATE_NOOP("Fault", "it has no sound"),
    QT_TRANSLATE_NOOP("Fault", "it has no pictures"),
    QT_TRANSLATE_NOOP("Fault", "its tracks have too many channels"),
    QT_TRANSLATE_NOOP("Fault", "there is no such file"),
    QT_TRANSLATE_NOOP("Fault", "it is a folder"),
    QT_TRANSLATE_NOOP("Fault", "it is empty"),
    QT_TRANSLATE_NOOP("Fault", "it refers to other files, which are not opened"),
    QT_TRANSLATE_NOOP("Fault", "it is of no kind that the FFmpeg libraries know"),
    QT_TRANSLATE_NOOP("Fault", "nothing has arrived for %1 s"),
    QT_TRANSLATE_NOOP("Fault", "reading failed: %1"),
    QT_TRANSLATE_NOOP("Fault", "what follows cannot be made sense of"),
    QT_TRANSLATE_NOOP("Fault", "the FFmpeg libraries here cannot decode %1"),
    QT_TRANSLATE_NOOP("Fault", "its end cannot be decoded: %1"),
    QT_TRANSLATE_NOOP("Fault", "%1 cannot be decoded: %2"),
    QT_TRANSLATE_NOOP("Fault", "a track's sample rate cannot be converted: %1"),
    QT_TRANSLATE_NOOP("Fault", "its samples are of an unknown format"),
    QT_TRANSLATE_NOOP("Fault", "decoding it takes more memory than it may"),
    QT_TRANSLATE_NOOP("Fault", "at %1 s track %2 turns from %3 channels at %4 Hz into %5 at %6 Hz"),
    QT_TRANSLATE_NOOP("Fault", "damaged on its way"),
    QT_TRANSLATE_NOOP("Fault", "the decoder has said nothing for %1 s"),
    QT_TRANSLATE_NOOP("Fault", "cannot read what the decoder says: %1"),
    QT_TRANSLATE_NOOP("Fault", "the decoder talks nonsense: %1"),
    QT_TRANSLATE_NOOP("Fault", "cannot keep a file open: %1"),
    QT_TRANSLATE_NOOP("Fault", "cannot make a pipe: %1"),
    QT_TRANSLATE_NOOP("Fault", "cannot start %1: %2"),
    QT_TRANSLATE_NOOP("Fault", "the decoder ended too early: %1"),
    QT_TRANSLATE_NOOP("Fault", "the decoder ended too early"),
    QT_TRANSLATE_NOOP("Fault", "it ended with exit code %1"),
    QT_TRANSLATE_NOOP("Fault", "it tried to do what it has no right to (SIGSYS)"),
    QT_TRANSLATE_NOOP("Fault", "it took more of the processor's time than it may (SIGXCPU)"),
    QT_TRANSLATE_NOOP("Fault", "it crashed (SIG%1, %2)"),
    QT_TRANSLATE_NOOP("Fault", "the tracks lie too far apart in the recording"),
    QT_TRANSLATE_NOOP("Fault", "samples are no numbers"),
    QT_TRANSLATE_NOOP("Fault", "Invalid data found when processing input"),
    QT_TRANSLATE_NOOP("Fault", "Input/output error"),
    QT_TRANSLATE_NOOP("Fault", "%1 % red"),
    QT_TRANSLATE_NOOP("Fault", "%1 % green"),
    QT_TRANSLATE_NOOP("Fault", "%1 % yellow"),
    QT_TRANSLATE_NOOP("Fault", "%1 % blue"),
    QT_TRANSLATE_NOOP("Fault", "%1 % magenta"),
    QT_TRANSLATE_NOOP("Fault", "%1 % cyan"),
    QT_TRANSLATE_NOOP("Fault", "%1 % white"),
    QT_TRANSLATE_NOOP("Fault", "%1 % grey"),
    QT_TRANSLATE_NOOP("Fault", "below black"),
    QT_TRANSLATE_NOOP("Fault", "above black"),
    QT_TRANSLATE_NOOP("Fault", "colour"),
    QT_TRANSLATE_NOOP("Fault", "Inputs %1"),
    QT_TRANSLATE_NOOP("Fault", "Input %1"),
    QT_TRANSLATE_NOOP("Fault", "%1 (input %2)"),
    QT_TRANSLATE_NOOP("Fault", "%1 (inputs %2)"),
    QT_TRANSLATE_NOOP("Fault", "%1 by %2 pixels at %3, %4"),
    QT_TRANSLATE_NOOP("Fault", "At least %1"),
    QT_TRANSLATE_NOOP("Fault", "unlike the others"),
    QT_TRANSLATE_NOOP("Fault", "black"),
    QT_TRANSLATE_NOOP("Fault", "damaged"),
    QT_TRANSLATE_NOOP("Fault", "left"),
    QT_TRANSLATE_NOOP("Fault", "right"),
    QT_TRANSLATE_NOOP("Fault", "above"),
    QT_TRANSLATE_NOOP("Fault", "below"),
    QT_TRANSLATE_NOOP("Fault", "system calls are not filtered (seccomp)"),
    QT_TRANSLATE_NOOP("Fault", "files are not out of reach (Landlock)"),
    QT_TRANSLATE_NOOP("Fault", "memory has no limit"),
    QT_TRANSLATE_NOOP("Fault", "%1 (%2)"),
    QT_TRANSLATE_NOOP("Fault", "%1, %2"),
    QT_TRANSLATE_NOOP("Fault", "%1 and %2"),
};

QString PartWords(const QString& text);

// Where no sentence fits, what the library says of a problem.
std::optional<QString> Sentence(const QString& text) {
    static const PatternTable kTable("Fault", kSentences, kSentences);
    return kTable.Words(text, PartWords);
}

// Several sentences without their stops, in one list.
std::optional<QString> ListWords(const QString& text) {
    const auto words = [](const QString& said) {
        auto sentence = Sentence(said.left(1).toUpper() + said.mid(1) + ".");
        if (sentence) {
            sentence->chop(1);
        }
        return sentence;
    };
    static const QString kBetween = ", ";
    for (qsizetype end = text.size(); end > 0; end = text.lastIndexOf(kBetween, end - text.size() - 1)) {
        auto first = words(text.left(end));
        if (first && end == text.size()) {
            return first;
        }
        const auto rest = first ? ListWords(text.mid(end + kBetween.size())) : std::nullopt;
        if (rest) {
            return *first + "; " + *rest;
        }
    }
    return std::nullopt;
}

QString PartWords(const QString& text) {
    static const PatternTable kTable("Fault", kParts, kParts);
    if (const auto list = ListWords(text)) {
        return *list;
    }
    return kTable.Words(text, PartWords).value_or(WindowWords(text));
}

}  // namespace

QString FaultSentence(const QString& text) {
    return Sentence(text).value_or(WindowWords(text));
}

QString PatchWords(const QString& name) {
    static const QRegularExpression kNumber(R"(\A(.*\D) (\d+)\z)");  // patches of one colour are counted
    const auto match = kNumber.match(name);
    return match.hasMatch() ? PartWords(match.captured(1)) + " " + match.captured(2) : PartWords(name);
}

}  // namespace studio
