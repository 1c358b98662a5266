#include "Host/Interface/Importer/ImportSelectors.h"
#include "Host/Lineup/Validation/Examination/Requests.h"
#include "Host/Lineup/Validation/PromiseGroups.h"

#include <array>
#include <bit>
#include <cstdint>
#include <string>

namespace lineup::validation {

namespace {

constexpr float kOtherRateHz = 12345.0F;  // of the host, when the settings have one of their own

// What a host goes by.
void RequireSame(const TestClip& first, const TestClip& second) {
    Require(first.hasVideo == second.hasVideo && first.hasAudio == second.hasAudio,
            "{} is described with other content the second time", first.name);
    Require(first.channels == second.channels, "{} is described with {} channels, and then with {}", first.name,
            first.channels, second.channels);
    Require(std::bit_cast<std::uint32_t>(first.rateHz) == std::bit_cast<std::uint32_t>(second.rateHz),
            "{} is described at {} Hz, and then at {} Hz", first.name, first.rateHz, second.rateHz);
    Require(first.durationSamples == second.durationSamples, "{} is described as {} samples long, and then as {}",
            first.name, first.durationSamples, second.durationSamples);
}

void CheckDescriptions(Examination& examination) {
    constexpr std::array kRatesHz = {48000.0F, 44100.0F, 96000.0F, 32000.0F, 8000.0F, 47952.0F, 44100.25F};
    std::vector<TestClip> clips = NewClips(examination, kRatesHz);
    for (const TestClip& clip : AllClips(examination)) {
        clips.push_back(clip);
    }
    for (const TestClip& clip : clips) {
        RequireSame(clip, Describe(examination, clip.name, clip.settings));
    }
    // A host that has no settings yet describes a new clip at its own rate.
    for (const float rateHz : kRatesHz) {
        const std::string name = fmt::format("a clip without settings at {} Hz", rateHz);
        RequireSame(DescribeWithoutSettings(examination, name, rateHz),
                    DescribeWithoutSettings(examination, name, rateHz));
    }
}

void CheckDescriptionRecord(Examination& examination) {
    const SettingsBytes defaults = MakeDefaults(examination, kOtherRateHz);
    for (const Placement& placement : kPlacements) {
        GuardedBytes prefs(defaults, placement);
        for (void* const settings : {AsPrefs(prefs), static_cast<void*>(nullptr)}) {
            const Description description(examination.Plugin(), settings, kOtherRateHz, placement);
            Require(description.Result() == kImportNoError, "a description is answered with {} instead of 0",
                    description.Result());
            description.RequireRecordIntact();
            RequireIntact("the settings of a description", prefs.ChangedOutside());
        }
    }
}

}  // namespace

std::span<const Promise> DescriptionPromises() {
    static constexpr std::array kRows = {
        Promise{"descriptions", "A clip is described as hosts can open it, and always the same.", CheckDescriptions},
        Promise{"description-record", "A description writes to its fields and to no other byte, wherever they lie.",
                CheckDescriptionRecord},
    };
    return kRows;
}

}  // namespace lineup::validation
