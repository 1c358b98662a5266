#include "Apps/studio/Text/ProblemPatterns.h"

#include <lineup/FormatTable.h>
#include "Apps/studio/Text/PatternTable.h"

#include <QCoreApplication>
#include <array>
#include <string>
#include <vector>

namespace studio {

namespace {

// What the library says, with %1, %2, ... for what differs, and what a window says for it.
struct Pattern {
    const char* said;
    const char* words;
};

constexpr std::array<Pattern, 51> kPatterns = {{
    {"must be a whole number of Hz from %1 to %2",
     QT_TRANSLATE_NOOP("Problem", "must be a whole number of Hz from %1 to %2")},
    {"must be %1 Hz or more, and below %2 Hz: at half the sample rate a sine is next to silent",
     QT_TRANSLATE_NOOP("Problem",
                       "must be %1 Hz or more, and below %2 Hz: at half the sample rate a sine is next to silent")},
    {"the name must end in %1", QT_TRANSLATE_NOOP("Problem", "the name must end in %1")},
    {"must end in the name of a file", QT_TRANSLATE_NOOP("Problem", "must end in the name of a file")},
    {"exists already; choose another name, or allow it to be overwritten",
     QT_TRANSLATE_NOOP("Problem", "exists already; choose another name")},
    {"must be even numbers of pixels", QT_TRANSLATE_NOOP("Problem", "must be even numbers of pixels")},
    {"must be from %1 to %2", QT_TRANSLATE_NOOP("Problem", "must be from %1 to %2")},
    {"%1 takes %2 at least", QT_TRANSLATE_NOOP("Problem", "%1 takes %2 at least")},
    {"%1 takes %2 at most", QT_TRANSLATE_NOOP("Problem", "%1 takes %2 at most")},
    {"%1 takes %2 pixels at most, such as %3", QT_TRANSLATE_NOOP("Problem", "%1 takes %2 pixels at most, such as %3")},
    {"%1 takes %2", QT_TRANSLATE_NOOP("Problem", "%1 takes %2")},
    {"%1 allows %2 pixels a second: at %3 %4 frames",
     QT_TRANSLATE_NOOP("Problem", "%1 allows %2 pixels a second: at %3 %4 frames")},
    {"the height must be a multiple of %1 for two fields in %2",
     QT_TRANSLATE_NOOP("Problem", "the height must be a multiple of %1 for two fields in %2")},
    {"an interlaced frame is two fields, and %1 frames a second are the most; 50 fields a second are 25 frames",
     QT_TRANSLATE_NOOP(
         "Problem",
         "an interlaced frame is two fields, and %1 frames a second are the most; 50 fields a second are 25 frames")},
    {"%1 has no fields; %2 have", QT_TRANSLATE_NOOP("Problem", "%1 has no fields")},
    {"a .%1 file holds one picture", QT_TRANSLATE_NOOP("Problem", "a .%1 file holds one picture")},
    {"a file takes a whole number of Hz, %1 at most",
     QT_TRANSLATE_NOOP("Problem", "a file takes a whole number of Hz, %1 at most")},
    {"a file takes 1, 2 or 6 channels", QT_TRANSLATE_NOOP("Problem", "a file takes 1, 2 or 6 channels")},
    {"a .%1 file cannot say which of its channels is which; choose flac, or mono tracks",
     QT_TRANSLATE_NOOP("Problem",
                       "a .%1 file cannot say which of its channels is which; choose FLAC, or one mono "
                       "track a channel")},
    {"a .%1 file has one track for all channels",
     QT_TRANSLATE_NOOP("Problem", "a .%1 file has one track for all channels")},
    {"a .%1 file holds none", QT_TRANSLATE_NOOP("Problem", "a .%1 file holds none")},
    {"a .%1 file", QT_TRANSLATE_NOOP("Problem", "a .%1 file")},
    {"must be 1 or more, and end before the clip's time does",
     QT_TRANSLATE_NOOP("Problem", "must be 1 or more, and end before the clip's time does")},
    {"must be HH:MM:SS:FF, or HH:MM:SS;FF for drop frame",
     QT_TRANSLATE_NOOP("Problem", "must be HH:MM:SS:FF, or HH:MM:SS;FF for drop frame")},
    {"must lie between 00:00:00:00 and the end of a day",
     QT_TRANSLATE_NOOP("Problem", "must lie between 00:00:00:00 and the end of a day")},
    {"frames count from 00 to %1 at this rate",
     QT_TRANSLATE_NOOP("Problem", "frames count from 00 to %1 at this rate")},
    {"drop frame (;) is for 29.97 and 59.94 frames a second; write a colon",
     QT_TRANSLATE_NOOP("Problem", "drop frame (;) is for 29.97 and 59.94 frames a second; write a colon")},
    {"drop frame leaves this number out; the minute begins with ;%1",
     QT_TRANSLATE_NOOP("Problem", "drop frame leaves this number out; the minute begins with ;%1")},
    {"there is no time code at %1 frames a second; there is at %2",
     QT_TRANSLATE_NOOP("Problem", "there is no time code at %1 frames a second; there is at %2")},
    {"cannot open %1 for writing: %2", QT_TRANSLATE_NOOP("Problem", "cannot open %1 for writing: %2")},
    {"cannot open %1: it is damaged: %2", QT_TRANSLATE_NOOP("Problem", "cannot open %1: it is damaged: %2")},
    {"cannot open a clip of %1 channels: 1 to %2 can be played",
     QT_TRANSLATE_NOOP("Problem", "cannot open a clip of %1 channels: 1 to %2 can be played")},
    {"cannot open a clip with a sample rate of %1 Hz: it must be above 0, at most %2",
     QT_TRANSLATE_NOOP("Problem", "cannot open a clip with a sample rate of %1 Hz: it must be above 0, at most %2")},
    {"cannot open %1: %2", QT_TRANSLATE_NOOP("Problem", "cannot open %1: %2")},
    {"cannot replace %1, which may not be written: %2",
     QT_TRANSLATE_NOOP("Problem", "cannot replace %1, which may not be written: %2")},
    {"cannot replace %1: %2", QT_TRANSLATE_NOOP("Problem", "cannot replace %1: %2")},
    {"it takes %1 bytes, and there is room for %2",
     QT_TRANSLATE_NOOP("Problem", "it takes %1 bytes, and there is room for %2")},
    {"cannot write %1: %2", QT_TRANSLATE_NOOP("Problem", "cannot write %1: %2")},
    {"it is no Lineup document: it is too large",
     QT_TRANSLATE_NOOP("Problem", "it is no Lineup document: it is too large")},
    {"it is no Lineup document", QT_TRANSLATE_NOOP("Problem", "it is no Lineup document")},
    {"it is a Lineup document of version %1, and this program reads version %2",
     QT_TRANSLATE_NOOP("Problem", "it is a Lineup document of version %1, and this program reads version %2")},
    {"\"%1\" is missing", QT_TRANSLATE_NOOP("Problem", "\"%1\" is missing")},
    {"\"%1\" must be %2 hexadecimal digits", QT_TRANSLATE_NOOP("Problem", "\"%1\" must be %2 hexadecimal digits")},
    {"cannot set up the dialog %1: its layout has no %2",
     QT_TRANSLATE_NOOP("Problem", "cannot set up the dialog %1: its layout has no %2")},
    {"The tone arrives at %1 dBFS; --level LEVEL says what was sent.",
     QT_TRANSLATE_NOOP("Problem", "The tone arrives at %1 dBFS; at which level it was sent is not known.")},
    {"The tone arrives at %1 Hz; --frequency HZ says what was sent.",
     QT_TRANSLATE_NOOP("Problem", "The tone arrives at %1 Hz; at which frequency it was sent is not known.")},
    {"No such file or directory", QT_TRANSLATE_NOOP("Problem", "No such file or directory")},
    {"Permission denied", QT_TRANSLATE_NOOP("Problem", "Permission denied")},
    {"No space left on device", QT_TRANSLATE_NOOP("Problem", "No space left on device")},
    {"Is a directory", QT_TRANSLATE_NOOP("Problem", "Is a directory")},
    {"Read-only file system", QT_TRANSLATE_NOOP("Problem", "Read-only file system")},
}};

const PatternTable& Table() {
    static const PatternTable kTable = [] {
        std::vector<const char*> said;
        std::vector<const char*> words;
        for (const Pattern& pattern : kPatterns) {
            said.push_back(pattern.said);
            words.push_back(pattern.words);
        }
        return PatternTable("Problem", said, words);
    }();
    return kTable;
}

// A codec goes by what a window calls it.
QString CodecWords(const QString& text) {
    const std::string name = text.toStdString();
    const auto* const video = lineup::FindVideoCodec(name);
    const auto* const audio = lineup::FindAudioCodec(name);
    const std::string_view words = video != nullptr   ? video->description
                                   : audio != nullptr ? audio->description
                                                      : std::string_view();
    return words.empty() ? text : QCoreApplication::translate("Format", std::string(words).c_str());
}

}  // namespace

QString WindowWords(const QString& text) {
    const auto words = Table().Words(text, WindowWords);
    return words ? *words : CodecWords(text);
}

}  // namespace studio
