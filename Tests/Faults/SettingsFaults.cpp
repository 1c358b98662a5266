// Faults of settings, descriptions and private copies.
#include "Src/BarsAndToneImporter/BarsAndToneInfo.h"
#include "Tests/Faults/Faults.h"

#include <atomic>
#include <cstdlib>
#include <cstring>

namespace faults {

namespace {

BarsAndToneInfo SettingsAt(const void* prefs) {
    BarsAndToneInfo settings;
    std::memcpy(&settings, prefs, sizeof settings);
    return settings;
}

// What no dialog makes.
bool IsOdd(const BarsAndToneInfo& settings) {
    const bool isEven = settings.sampleRate >= 8000.0F && settings.sampleRate <= 384000.0F && settings.numChannels <= 6;
    return !isEven;
}

bool HasOddSettings(const imFileInfoRec8& info) {
    return info.prefs != nullptr && IsOdd(SettingsAt(info.prefs));
}

std::int32_t ChangeSize(const Request& asked) {
    static std::atomic<std::uint32_t> queries{0};
    const std::int32_t result = asked.Rightly();
    if (auto& record = asked.As<imGetPrefsRec>(); record.prefs == nullptr) {
        record.prefsLength += queries++;
    }
    return result;
}

std::int32_t ShareCopies(const Request& asked) {
    static BarsAndToneInfo shared;
    if (asked.selector == kImportReleasePrivateData) {
        return kImportNoError;
    }
    if (asked.selector != kImportGetInfo) {
        return asked.Rightly();
    }
    const std::int32_t result = asked.Rightly();
    auto& info = asked.As<imFileInfoRec8>();
    shared = SettingsAt(info.privateData);
    test::ServeRightly(kImportReleasePrivateData, info.privateData);
    info.privateData = &shared;
    return result;
}

std::int32_t Leak(const Request& asked) {
    static std::atomic<void*> lastLeaked;  // others could read it, so no compiler may leave the memory out
    lastLeaked = std::malloc(24);
    return asked.Rightly();
}

}  // namespace

std::vector<Fault> SettingsFaults() {
    return {
        {"LongSettings",
         "Has settings of 33 bytes.",
         {},
         [](const Request& asked) {
             if (asked.selector == kImportGetPrefs) {
                 asked.As<imGetPrefsRec>().prefsLength = 33;
             }
             return asked.selector == kImportInit ? kImportInitAnswer : kImportNoError;
         },
         {}},
        {"SettingsOfAnotherSize",
         "Says that its settings are 28 bytes.",
         kImportGetPrefs,
         After<imGetPrefsRec>([](imGetPrefsRec& record) { record.prefsLength = 28; }),
         {{"clip-defaults", "28 bytes instead of 32"}}},
        {"SettingsGrow",
         "Says another size of its settings every time.",
         kImportGetPrefs,
         ChangeSize,
         {{"settings-size", "the settings are 32 bytes, and then 33"}}},
        {"DefaultsIgnoreTheHostsRate",
         "Makes default settings at 48000 Hz for every host.",
         kImportGetPrefs,
         Before<imGetPrefsRec>([](imGetPrefsRec& record) {
             if (record.prefs != nullptr) {
                 record.hostSampleRate = 48000.0F;
             }
         }),
         {{"clip-defaults", "the silent defaults at 44100 Hz"}}},
        {"DefaultsWritePastTheSettings",
         "Writes four bytes more than its settings have.",
         kImportGetPrefs,
         Before<imGetPrefsRec>([](const imGetPrefsRec& record) {
             if (record.prefs != nullptr) {
                 std::memset(static_cast<char*>(record.prefs) + sizeof(BarsAndToneInfo), 0, 4);
             }
         }),
         {{"settings-defaults", "written past: 1 bytes after its end"}}},
        {"DescribesAnotherRate",
         "Describes every clip at 48000 Hz.",
         kImportGetInfo,
         After<imFileInfoRec8>([](imFileInfoRec8& info) { info.sampleRate = 48000.0F; }),
         {{"clip-with-settings", "described at 48000 Hz"}}},
        {"DescribesNewClipsAsMono",
         "Describes a clip without settings as mono.",
         kImportGetInfo,
         After<imFileInfoRec8>(
             [](imFileInfoRec8& info) { info.numChannels = info.prefs == nullptr ? 1 : info.numChannels; }),
         {{"clip-without-settings", "described with 1 channels"}}},
        {"NoChannels",
         "Describes a clip without pictures and sound.",
         {},
         [](const Request& asked) {
             if (asked.selector == kImportGetInfo) {
                 asked.As<imFileInfoRec8>().numChannels = 0;
             }
             return asked.selector == kImportInit ? kImportInitAnswer : kImportNoError;
         },
         {{"descriptions", "the content flags are"}}},
        {"DescriptionTouchesReservedBytes",
         "Clears the bytes at the end of the record of a description.",
         kImportGetInfo,
         Before<imFileInfoRec8>([](imFileInfoRec8& info) { info.reserved214[25] = 0; }),
         {{"description-record", "changed at byte 239"}}},
        {"RefusesOddSettings",
         "Refuses to describe clips that no dialog makes.",
         kImportGetInfo,
         [](const Request& asked) {
             return HasOddSettings(asked.As<imFileInfoRec8>()) ? kImportUnsupported : asked.Rightly();
         },
         {{"clip-odd-settings", "answered with 3 instead of 0"}, {"hostile-descriptions", "", "passed"}}},
        {"MendsOddSettings",
         "Writes to the host's settings when no dialog made them.",
         kImportGetInfo,
         Before<imFileInfoRec8>([](const imFileInfoRec8& info) {
             if (HasOddSettings(info)) {
                 const BarsAndToneInfo mended;
                 std::memcpy(info.prefs, &mended, sizeof mended);
             }
         }),
         {{"hostile-descriptions", "the settings of a description: changed at byte"}}},
        {"SharesPrivateCopies",
         "Hands the same private copy to every clip.",
         {},
         ShareCopies,
         {{"private-copies", "share one private copy"}}},
        {"LeaksPrivateCopies",
         "Never frees a private copy.",
         kImportReleasePrivateData,
         [](const Request&) { return kImportNoError; },
         {{"release-frees", "descriptions that were released leak"}}},
        {"LeaksWithEveryRequest",
         "Keeps a little memory of every audio request.",
         kImportAudio,
         Leak,
         {{"requests-keep-no-memory", "audio requests leak"}}},
        {"PlaysWithoutSettings",
         "Serves audio requests that carry no settings, with silence.",
         kImportAudio,
         [](const Request& asked) {
             const auto& request = asked.As<imImportAudioRec7>();
             const bool hasNone = request.prefs == nullptr && request.privateData == nullptr;
             return hasNone ? kImportNoError : asked.Rightly();
         },
         {{"settings-order", "answered with 0 instead of 5"}}},
        {"PrefersThePrivateCopy",
         "Goes by the private copy where there are settings, too.",
         kImportAudio,
         Changed<imImportAudioRec7>([](imImportAudioRec7& request) {
             request.prefs = request.privateData != nullptr ? request.privateData : request.prefs;
         }),
         {{"settings-order", "does not go by the settings"}}},
    };
}

}  // namespace faults
