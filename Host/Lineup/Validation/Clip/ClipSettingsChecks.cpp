#include "Host/Interface/Core/Numeric.h"
#include "Host/Interface/Importer/ImportSelectors.h"
#include "Host/Lineup/Validation/Clip/Identity.h"
#include "Host/Lineup/Validation/Clip/Sounds.h"
#include "Host/Lineup/Validation/Examination/Requests.h"
#include "Host/Lineup/Validation/Probes/HostileNumbers.h"
#include "Host/Lineup/Validation/PromiseGroups.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>

namespace lineup::validation {

namespace {

constexpr float kClipSeconds = 5.0F;
constexpr float kOtherRateHz = 12345.0F;  // of the host, when the settings have one of their own

std::string SettingsText(const BarsAndToneInfo& settings) {
    return fmt::format("{} channels at {} Hz", settings.numChannels, settings.sampleRate);
}

// What the record must say of a clip; `what` names the clip.
void RequireDescription(const Description& description, std::uint32_t channels, float rateHz, const std::string& what) {
    Require(description.Result() == kImportNoError, "the description of {} is answered with {} instead of 0", what,
            description.Result());
    const imFileInfoRec8 info = description.Record();
    Require(info.hasVideo == 1 && info.hasAudio == 1, "{}: the content flags are {} and {} instead of 1", what,
            int{info.hasVideo}, int{info.hasAudio});
    Require(info.numChannels == channels, "{} is described with {} channels", what, std::uint32_t{info.numChannels});
    const float describedRateHz = info.sampleRate;
    Require(std::bit_cast<std::uint32_t>(describedRateHz) == std::bit_cast<std::uint32_t>(rateHz),
            "{} is described at {} Hz", what, describedRateHz);
    const std::int64_t samples = zelcore::numeric::TruncateToInt64(static_cast<double>(rateHz * kClipSeconds));
    Require(info.durationSamples == samples, "{} is described as {} samples long instead of {}, five seconds", what,
            std::int64_t{info.durationSamples}, samples);
    Require(description.PrivateData() != nullptr, "{} gets no private copy of its settings", what);
}

void RequireDescriptionOf(const RawImporter& plugin, const BarsAndToneInfo& settings) {
    GuardedRecord<BarsAndToneInfo> prefs(settings, kPlacements.back());
    const Description description(plugin, prefs.Data(), kOtherRateHz);
    RequireDescription(description, settings.numChannels, settings.sampleRate, SettingsText(settings));
    RequireIntact("the settings of a description", prefs.ChangedOutside());
}

void CheckFileType(Examination& examination) {
    const std::vector<std::uint32_t> types = FileTypes(examination.Plugin());
    Require(std::ranges::find(types, kBarsAndToneFileType) != types.end(), "the file type XQNV is not offered");
}

void CheckSettingsOfANewClip(Examination& examination) {
    const std::size_t size = examination.SettingsSize();
    Require(size == sizeof(BarsAndToneInfo), "the settings are {} bytes instead of {}", size, sizeof(BarsAndToneInfo));
    for (const float rateHz : {48000.0F, 44100.0F, 96000.0F, 32000.0F, 44100.25F, 0.0F}) {
        GuardedRecord<BarsAndToneInfo> prefs;
        SendDefaults(examination.Plugin(), prefs, rateHz);
        BarsAndToneInfo expected;
        expected.sampleRate = rateHz;
        const BarsAndToneInfo made = prefs.Get();
        using Bytes = std::array<std::uint8_t, sizeof(BarsAndToneInfo)>;
        Require(std::bit_cast<Bytes>(made) == std::bit_cast<Bytes>(expected),
                "the silent defaults at {} Hz are {} of type {}, version {}; a new clip has {} of type {}, version {}",
                rateHz, Text(made), made.channelType, made.version, Text(expected), expected.channelType,
                expected.version);
    }
}

void CheckDescriptionWithSettings(Examination& examination) {
    for (const float rateHz : {48000.0F, 44100.0F, 96000.0F, 32000.0F, 8000.0F, 384000.0F, 47952.0F, 44100.25F}) {
        for (const std::uint32_t channels : {1U, 2U, 6U}) {
            BarsAndToneInfo settings;
            settings.sampleRate = rateHz;
            settings.numChannels = channels;
            RequireDescriptionOf(examination.Plugin(), settings);
        }
    }
}

void CheckDescriptionWithoutSettings(Examination& examination) {
    for (const float rateHz : {48000.0F, 44100.0F, 96000.0F, 8000.0F, 44100.25F}) {
        const Description description(examination.Plugin(), nullptr, rateHz);
        RequireDescription(description, 2, rateHz, fmt::format("a clip without settings at {} Hz", rateHz));
    }
}

void CheckOddDescriptions(Examination& examination) {
    constexpr int kDrawn = 500;
    HostileNumbers numbers(examination.Numbers());
    for (const float rateHz : kHostileFloats) {
        BarsAndToneInfo settings;
        settings.sampleRate = rateHz;
        RequireDescriptionOf(examination.Plugin(), settings);
    }
    for (int i = 0; i < kDrawn; ++i) {
        BarsAndToneInfo settings = numbers.Settings();
        settings.numChannels = static_cast<std::uint32_t>(examination.AnyBits() >> 32U);
        RequireDescriptionOf(examination.Plugin(), settings);
    }
}

}  // namespace

std::span<const Promise> ClipSettingsPromises() {
    static constexpr std::array kRows = {
        Promise{"clip-file-type", "The list of file formats has XQNV.", CheckFileType},
        Promise{"clip-defaults", "Settings are 32 bytes, and silent defaults those of a new clip at the host's rate.",
                CheckSettingsOfANewClip},
        Promise{"clip-with-settings", "A clip is described with its settings' channels and rate, and as five seconds.",
                CheckDescriptionWithSettings},
        Promise{"clip-without-settings", "A clip without settings is described as stereo at the host's rate.",
                CheckDescriptionWithoutSettings},
        Promise{"clip-odd-settings", "Settings that no dialog makes are described as they stand.",
                CheckOddDescriptions},
    };
    return kRows;
}

}  // namespace lineup::validation
