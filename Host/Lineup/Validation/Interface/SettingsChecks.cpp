#include "Host/Interface/Importer/ImportSelectors.h"
#include "Host/Lineup/Validation/Examination/Requests.h"
#include "Host/Lineup/Validation/PromiseGroups.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace lineup::validation {

namespace {

// Some of each clip's sound, from its beginning.
constexpr Stretch kStretch{.position = 0, .count = 500};

void RequireSizeQuery(const RawImporter& plugin, std::size_t size, std::uint8_t useDefaults, Placement placement) {
    GuardedRecord<imGetPrefsRec> record(placement);
    imGetPrefsRec query = record.Get();
    query.prefs = nullptr;
    query.useDefaults = useDefaults;
    record.Put(query);
    const std::int32_t result = plugin.Call(kImportGetPrefs, nullptr, record.Data());
    Require(result == kImportNoError, "the size query is answered with {} instead of 0", result);
    const std::uint32_t now = record.Get().prefsLength;
    Require(now == size, "the settings are {} bytes, and then {}", size, now);
    RequireIntact("the record of the size query", record.ChangedOutside({{offsetof(imGetPrefsRec, prefsLength), 4}}));
}

void CheckSettingsSize(Examination& examination) {
    const std::size_t size = examination.SettingsSize();
    for (const Placement& placement : kPlacements) {
        RequireSizeQuery(examination.Plugin(), size, 0, placement);
        RequireSizeQuery(examination.Plugin(), size, 1, placement);
    }
}

void SkipUnlessItHasSettings(Examination& examination) {
    if (examination.SettingsSize() == 0) {
        throw Skipped("it has no settings: their size is 0");
    }
}

void CheckSettingsDefaults(Examination& examination) {
    SkipUnlessItHasSettings(examination);
    const RawImporter& plugin = examination.Plugin();
    for (const float rateHz : {48000.0F, 44100.0F, 96000.0F, 32000.0F, 44100.25F, 0.0F}) {
        const SettingsBytes expected = MakeDefaults(examination, rateHz);
        for (const Placement& placement : kPlacements) {
            for (const std::uint8_t useDefaults : {std::uint8_t{1}, std::uint8_t{0xFF}}) {
                GuardedBytes prefs(SettingsBytes(expected.size()), placement);
                SendDefaults(plugin, prefs, rateHz, useDefaults, placement);
                const bool same = std::ranges::equal(prefs.Bytes(), expected);
                Require(same, "the silent defaults at {} Hz are other bytes the second time", rateHz);
            }
        }
    }
}

// The private copy that a description makes; null when it makes none.
void RequirePrivateCopy(Examination& examination, const TestClip& clip) {
    const RawImporter& plugin = examination.Plugin();
    GuardedBytes prefs(clip.settings);
    void* const settings = AsPrefs(prefs);
    const Description first(plugin, settings, clip.rateHz);
    const Description second(plugin, settings, clip.rateHz);
    void* const copy = first.PrivateData();
    if (copy == nullptr) {
        throw Skipped("its descriptions make no private copy: privateData is null");
    }
    Require(copy != second.PrivateData(), "two descriptions of {} share one private copy", clip.name);
    Require(copy != settings, "the private copy of {} is the host's own settings", clip.name);
    if (clip.hasAudio && settings != nullptr) {
        const Samples expected = ReadAudio(plugin, clip, kStretch);
        const SettingsBytes other(clip.settings.size());  // the host may do what it likes with its settings
        prefs.PutBytes(other.data(), other.size());
        Require(ReadWith(plugin, {.privateData = copy}, clip.channels, kStretch) == expected,
                "the private copy of {} does not sound like its settings", clip.name);
    }
}

void CheckPrivateCopies(Examination& examination) {
    for (const TestClip& clip : AllClips(examination)) {
        RequirePrivateCopy(examination, clip);
    }
}

void RequireRefusedWithoutSettings(const RawImporter& plugin) {
    GuardedBuffers buffers(BuffersFor(0), kStretch.count);
    const std::string what = Text(kStretch);
    const std::int32_t audio = SendAudio(plugin, {}, kStretch, buffers);
    Require(audio == kImportNoSettings, "{} without settings is answered with {} instead of {}", what, audio,
            static_cast<int>(kImportNoSettings));
    RequireIntact(what + " without settings", buffers.WrittenFrom(0));
    const std::int32_t peaks =
        SendPeaks(plugin, {}, {.position = 0, .rateHz = 100.0F, .count = kStretch.count}, buffers, buffers);
    Require(peaks == kImportNoSettings || peaks == kImportUnsupported,
            "peaks without settings are answered with {} instead of {}", peaks, static_cast<int>(kImportNoSettings));
    RequireIntact("peaks without settings", buffers.WrittenFrom(0));
}

void CheckSettingsOrder(Examination& examination) {
    SkipUnlessItHasSettings(examination);
    const RawImporter& plugin = examination.Plugin();
    const std::vector<TestClip> clips = WithSound(AllClips(examination));
    for (const TestClip& clip : clips) {
        for (const TestClip& other : {clips.front(), clips.back()}) {
            GuardedBytes otherPrefs(other.settings);
            const Description description(plugin, otherPrefs.Data(), other.rateHz);
            HostSettings settings(plugin, clip);
            SettingsPointers both = settings.Pointers();
            both.privateData = description.PrivateData();
            Require(ReadWith(plugin, both, clip.channels, kStretch) == ReadAudio(plugin, clip, kStretch),
                    "a request with the settings of {} and the private copy of {} does not go by the settings",
                    clip.name, other.name);
        }
    }
    RequireRefusedWithoutSettings(plugin);
}

}  // namespace

std::span<const Promise> SettingsPromises() {
    static constexpr std::array kRows = {
        Promise{"settings-size", "Asked without a buffer, the size of the settings is said, and nothing else written.",
                CheckSettingsSize},
        Promise{"settings-defaults", "Silent defaults fill the settings and no byte more, and are always the same.",
                CheckSettingsDefaults},
        Promise{"private-copies", "A private copy belongs to one description, and sounds like its settings.",
                CheckPrivateCopies},
        Promise{"settings-order",
                "Settings go before the private copy; without either, 5 is answered and nothing written.",
                CheckSettingsOrder},
    };
    return kRows;
}

}  // namespace lineup::validation
