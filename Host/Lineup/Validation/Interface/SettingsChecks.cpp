#include "Host/Interface/Importer/ImportRecords.h"
#include "Host/Interface/Importer/ImportSelectors.h"
#include "Host/Lineup/Validation/Checks.h"
#include "Host/Lineup/Validation/Clip/Sounds.h"
#include "Host/Lineup/Validation/Probes/GuardedRecord.h"
#include "Host/Lineup/Validation/Probes/HostileNumbers.h"
#include "Src/BarsAndToneImporter/BarsAndToneInfo.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace lineup::validation {

namespace {

constexpr std::size_t kSettingsBytes = sizeof(BarsAndToneInfo);

void RequireSizeQuery(const RawImporter& plugin, std::uint8_t useDefaults, Placement placement) {
    GuardedRecord<imGetPrefsRec> record(placement);
    imGetPrefsRec query = record.Get();
    query.prefs = nullptr;
    query.useDefaults = useDefaults;
    record.Put(query);
    const std::int32_t result = plugin.Call(kImportGetPrefs, nullptr, record.Data());
    Require(result == kImportNoError, "the size query is answered with {} instead of 0", result);
    const std::uint32_t size = record.Get().prefsLength;
    Require(size == kSettingsBytes, "the settings are {} bytes instead of {}", size, kSettingsBytes);
    RequireIntact("the record of the size query", record.ChangedOutside({{offsetof(imGetPrefsRec, prefsLength), 4}}));
}

// `before` is what the host's buffer holds; silent defaults take no notice of it.
void RequireDefaults(const RawImporter& plugin, float rateHz, std::uint8_t useDefaults, Placement placement) {
    GuardedRecord<BarsAndToneInfo> prefs(placement);
    GuardedRecord<imGetPrefsRec> record(placement);
    imGetPrefsRec request = record.Get();
    request.prefs = prefs.Data();
    request.useDefaults = useDefaults;
    request.hostSampleRate = rateHz;
    record.Put(request);
    const std::int32_t result = plugin.Call(kImportGetPrefs, nullptr, record.Data());
    const std::string what = fmt::format("the silent defaults at {} Hz", rateHz);
    Require(result == kImportNoError, "{} are answered with {} instead of 0", what, result);
    RequireIntact(fmt::format("the record of {}", what), record.ChangedOutside());
    RequireIntact(fmt::format("the buffer of {}", what), prefs.ChangedOutside({{0, kSettingsBytes}}));

    BarsAndToneInfo expected;
    expected.sampleRate = rateHz;
    const BarsAndToneInfo made = prefs.Get();
    using Bytes = std::array<std::uint8_t, kSettingsBytes>;
    Require(std::bit_cast<Bytes>(made) == std::bit_cast<Bytes>(expected),
            "{} are {} of type {}, version {}; a new clip has {} of type {}, version {}", what, Text(made),
            made.channelType, made.version, Text(expected), expected.channelType, expected.version);
}

}  // namespace

void CheckSettingsSize(Examination& examination) {
    for (const Placement& placement : kPlacements) {
        RequireSizeQuery(examination.Plugin(), 0, placement);
        RequireSizeQuery(examination.Plugin(), 1, placement);
    }
}

void CheckSettingsDefaults(Examination& examination) {
    for (const Placement& placement : kPlacements) {
        for (const float rateHz : {48000.0F, 44100.0F, 96000.0F, 32000.0F, 44100.25F, 0.0F}) {
            RequireDefaults(examination.Plugin(), rateHz, 1, placement);
        }
        RequireDefaults(examination.Plugin(), 48000.0F, 0xFF, placement);
    }
}

}  // namespace lineup::validation
