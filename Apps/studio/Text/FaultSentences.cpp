#include "Apps/studio/Text/FaultSentences.h"

#include "Apps/studio/Text/PatternTable.h"

#include <array>

namespace studio {

namespace {

// What a check says, with %1, %2, ... for what differs. The first that fits is taken.
constexpr std::array kSentences = {
    QT_TRANSLATE_NOOP("Fault", "%1 is also heard at input %2, %3 dB below where it belongs."),
    QT_TRANSLATE_NOOP("Fault", "Both inputs hold sums of channels: a fold-down to stereo."),
    QT_TRANSLATE_NOOP("Fault", "Input %1 holds a sum of channels."),
    QT_TRANSLATE_NOOP("Fault", "Inputs %1 hold a sum of channels."),
    QT_TRANSLATE_NOOP("Fault", "%1 is at inputs %2."),
    QT_TRANSLATE_NOOP("Fault", "%1 are swapped (inputs %2)."),
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
    QT_TRANSLATE_NOOP("Fault", "Left and right are turned over."),
    QT_TRANSLATE_NOOP("Fault", "Top and bottom are turned over."),
    QT_TRANSLATE_NOOP("Fault", "This is the %1 card, where the %2 card is due."),
    QT_TRANSLATE_NOOP("Fault", "The card lies %1 pixels to the %2 and %3 %4 of its place."),
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
    QT_TRANSLATE_NOOP("Fault", "%1, %2"),
    QT_TRANSLATE_NOOP("Fault", "%1 and %2"),
};

QString PartWords(const QString& text) {
    static const PatternTable kTable("Fault", kParts, kParts);
    return kTable.Words(text, PartWords).value_or(text);
}

}  // namespace

QString FaultSentence(const QString& text) {
    static const PatternTable kTable("Fault", kSentences, kSentences);
    return kTable.Words(text, PartWords).value_or(text);
}

}  // namespace studio
