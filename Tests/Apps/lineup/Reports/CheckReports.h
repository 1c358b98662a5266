#pragma once

#include <lineup/CheckReport.h>

#include <string>

namespace test {

/// One cycle of BLITS in which nothing is wrong: six inputs, and lanes of four points.
inline lineup::CheckReport RightCheckReport() {
    lineup::CheckReport report;
    report.source = "take <1>.mov";
    report.verdict = lineup::CheckVerdict::Right;
    lineup::SoundReport& sound = report.sound.emplace();
    sound.expected = "blits";
    sound.sampleRate = 48000;
    sound.inputs = 6;
    sound.startsAt = 3.2144;
    sound.cycles = 2.1;
    sound.speed = lineup::SpeedReport{.ratio = 1.000001, .ppm = 1};
    for (const char* const channel : {"L", "R", "C", "LFE", "Ls", "Rs"}) {
        const int input = static_cast<int>(sound.channels.size());
        sound.channels.push_back({.input = input,
                                  .channel = channel,
                                  .polarity = 1,
                                  .level = -18.06,
                                  .gain = -0.001,
                                  .delay = 0.25,
                                  .noise = -120.6,
                                  .distortion = -118.0,
                                  .dc = 0.0,
                                  .effectiveBits = 24});
        sound.lanes.found.push_back({0, 0.125F, 0.125F, 0});
        sound.lanes.expected.push_back({0, 0.125F, 0.125F, 0.125F});
    }
    sound.lanes.start = 3;
    sound.lanes.step = 0.5;
    return report;
}

/// The same with the third input upside down and nothing at the fourth.
inline lineup::CheckReport FaultyCheckReport() {
    lineup::CheckReport report = RightCheckReport();
    report.verdict = lineup::CheckVerdict::Faults;
    report.sound->channels[2].polarity = -1;
    report.sound->channels[3] = lineup::ChannelReport();
    report.sound->channels[3].input = 3;
    report.faults.push_back({.id = "polarity-inverted",
                             .part = lineup::CheckPart::Sound,
                             .inputs = {2},
                             .channels = {"C"},
                             .measured = -1,
                             .expected = 1,
                             .unit = "",
                             .at = {},
                             .text = "C (input 3) is upside down."});
    report.faults.push_back({.id = "channel-missing",
                             .part = lineup::CheckPart::Sound,
                             .inputs = {3},
                             .channels = {"LFE"},
                             .measured = {},
                             .expected = {},
                             .unit = "",
                             .at = 4.5,
                             .text = "LFE is missing at <input 4>."});
    report.notes.push_back({.id = "low-frequency-band-limited", .text = "The LFE is filtered & quiet."});
    return report;
}

/// A recording that could not be read.
inline lineup::CheckReport UnreadableCheckReport() {
    lineup::CheckReport report;
    report.source = "missing.wav";
    report.notes.push_back({.id = "unreadable",
                            .part = lineup::CheckPart::Both,
                            .text = "cannot read missing.wav: there is no such file"});
    return report;
}

}  // namespace test
