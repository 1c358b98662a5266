#pragma once

#include <lineup/ChannelLayout.h>
#include <lineup/Clip.h>
#include <lineup/ClipDocument.h>

#include <QString>
#include <cstddef>
#include <vector>

/// A clip in words, as the window shows it.
namespace studio {

/// "1000 Hz at −12.04 dBFS", or the sequence's title, or that it is unknown.
[[nodiscard]] QString SignalWords(const lineup::Clip& clip);

/// "5.1 · 48 kHz".
[[nodiscard]] QString SoundWords(const lineup::Clip& clip);

/// "Stereo"
[[nodiscard]] QString LayoutWords(const lineup::ChannelLayout& layout);

/// "1920 × 1080 · 25 fps · HD card".
[[nodiscard]] QString PictureWords(const lineup::PictureFormat& picture);

/// "25", "29.97".
[[nodiscard]] QString FrameRateWords(lineup::Rational frameRate);

/// "−12.04 dBFS", "silence" for a gain of 0; "\u2212" being the minus.
[[nodiscard]] QString LevelWords(double gain);

/// "0:04.520", "1:00:04.520".
[[nodiscard]] QString TimeWords(double seconds);

/// "00:00:01:17", frames counted without drop.
[[nodiscard]] QString TimecodeWords(std::int64_t frame, lineup::Rational frameRate);

/// One channel as a person sees it: its place in the plug-in's order, and its name.
struct ShownChannel {
    std::size_t index;
    QString name;
};

/// A clip's channels in the order of files and devices: L, R, C, LFE, Ls, Rs.
[[nodiscard]] std::vector<ShownChannel> ShownChannels(const lineup::Clip& clip);

}  // namespace studio
