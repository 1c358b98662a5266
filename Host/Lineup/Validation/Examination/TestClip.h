#pragma once

#include "Host/Lineup/Validation/Examination/Examination.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace lineup::validation {

/// A clip that requests are made for: settings that are opaque, and what the plug-in says of them.
struct TestClip {
    std::string name;        ///< as a failure names it: "a new clip at 48000 Hz"
    SettingsBytes settings;  ///< empty when the plug-in has none
    std::size_t channels = 0;
    float rateHz = 0;
    std::int64_t durationSamples = 0;
    bool hasVideo = false;
    bool hasAudio = false;
};

/// The settings that the plug-in makes for a new clip of a host at `rateHz`.
[[nodiscard]] SettingsBytes MakeDefaults(Examination& examination, float rateHz);

/// The clip of these settings, as the plug-in describes it. Throws Failure when it does not describe it, or
/// describes what no host can open: neither pictures nor sound, no channels or more than 64, or a sample rate that is
/// not above 0 Hz, or above 1 MHz.
[[nodiscard]] TestClip Describe(Examination& examination, std::string name, SettingsBytes settings);

/// The same of a new clip of a host at `rateHz` that has no settings for it yet. Its requests cannot be made.
[[nodiscard]] TestClip DescribeWithoutSettings(Examination& examination, std::string name, float rateHz);

/// New clips of hosts at these rates, without those whose settings are the same.
[[nodiscard]] std::vector<TestClip> NewClips(Examination& examination, std::span<const float> ratesHz);

/// New clips at 48000 and 44100 Hz, and those that the bundle is known to have.
[[nodiscard]] std::vector<TestClip> AllClips(Examination& examination);

/// Those that have sound. Throws Skipped when none has.
[[nodiscard]] std::vector<TestClip> WithSound(std::vector<TestClip> clips);

/// Throws Skipped when the plug-in's new clips have no pictures.
void RequirePictures(Examination& examination);

}  // namespace lineup::validation
