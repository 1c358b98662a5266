#include "Host/Interface/Core/Numeric.h"
#include "Host/Interface/Importer/ImportRecords.h"
#include "Host/Interface/Importer/ImportSelectors.h"
#include "Host/Lineup/Validation/Checks.h"
#include "Host/Lineup/Validation/Examination/Requests.h"
#include "Host/Lineup/Validation/Probes/GuardedRecord.h"
#include "Host/Lineup/Validation/Probes/HostileNumbers.h"

#include <array>
#include <bit>
#include <cstddef>
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
    Require(info.video12 == 24 && info.video22 == 5 && info.video31 == 1 && info.video32 == 2,
            "{}: the video properties are {}, {}, {} and {} instead of 24, 5, 1 and 2", what, int{info.video12},
            int{info.video22}, int{info.video31}, int{info.video32});
    Require(info.audioSampleFormat == 6, "{}: the sample format is {} instead of 6", what,
            std::uint32_t{info.audioSampleFormat});
    Require(info.numChannels == channels, "{} is described with {} channels", what, std::uint32_t{info.numChannels});
    const float describedRateHz = info.sampleRate;
    Require(std::bit_cast<std::uint32_t>(describedRateHz) == std::bit_cast<std::uint32_t>(rateHz),
            "{} is described at {} Hz", what, describedRateHz);
    const std::int64_t samples = zelcore::numeric::TruncateToInt64(static_cast<double>(rateHz * kClipSeconds));
    Require(info.durationSamples == samples, "{} is described as {} samples long instead of {}, five seconds", what,
            std::int64_t{info.durationSamples}, samples);
    void* const privateData = info.privateData;
    Require(privateData != nullptr, "{} gets no private copy of its settings", what);
}

void RequireDescriptionOf(const RawImporter& plugin, const BarsAndToneInfo& settings) {
    GuardedRecord<BarsAndToneInfo> prefs(settings, kPlacements.back());
    const Description description(plugin, prefs.Data(), kOtherRateHz);
    RequireDescription(description, settings.numChannels, settings.sampleRate, SettingsText(settings));
    RequireIntact("the settings of a description", prefs.ChangedOutside());
}

}  // namespace

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

void CheckDescriptionRecord(Examination& examination) {
    for (const Placement& placement : kPlacements) {
        GuardedRecord<BarsAndToneInfo> prefs(BarsAndToneInfo{});
        for (void* const settings : {prefs.Data(), static_cast<void*>(nullptr)}) {
            const Description description(examination.Plugin(), settings, kOtherRateHz, placement);
            Require(description.Result() == kImportNoError, "a description is answered with {} instead of 0",
                    description.Result());
            RequireIntact("the record of GetInfo",
                          description.Guarded().ChangedOutside({{offsetof(imFileInfoRec8, hasVideo), 2},
                                                                {offsetof(imFileInfoRec8, video12), 2},
                                                                {offsetof(imFileInfoRec8, video22), 1},
                                                                {offsetof(imFileInfoRec8, video31), 2},
                                                                {offsetof(imFileInfoRec8, numChannels), 20},
                                                                {offsetof(imFileInfoRec8, privateData), 8}}));
            RequireIntact("the settings of a description", prefs.ChangedOutside());
        }
    }
}

void CheckHostileDescriptions(Examination& examination) {
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

}  // namespace lineup::validation
