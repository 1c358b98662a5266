#include "Host/Interface/Importer/ImportRecords.h"
#include "Host/Interface/Importer/ImportSelectors.h"
#include "Host/Lineup/Validation/Examination/Examination.h"
#include "Host/Lineup/Validation/Interface/ExportedSymbols.h"
#include "Host/Lineup/Validation/Probes/GuardedRecord.h"
#include "Host/Lineup/Validation/PromiseGroups.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>

namespace lineup::validation {

namespace {

constexpr std::array kSelectors = {kImportInit,         kImportImage,   kImportReleasePrivateData,
                                   kImportGetIndFormat, kImportAudio,   kImportGetIndPixelFormat,
                                   kImportReserved28,   kImportGetInfo, kImportGetPrefs,
                                   kImportPeakAudio};

bool IsInUse(std::int32_t selector) {
    return std::ranges::find(kSelectors, selector) != kSelectors.end();
}

// An unknown request's parameters could be anything: all three point at memory that must stay as it is.
void RequireUnknown(const RawImporter& plugin, std::int32_t selector) {
    constexpr std::size_t kLargestRecord = 1024;
    for (const Placement& placement : {kPlacements.front(), kPlacements.back()}) {
        GuardedBytes parameters(kLargestRecord, placement);
        GuardedBytes record(kLargestRecord, placement);
        const std::int32_t result = plugin.Call(selector, parameters.Data(), record.Data());
        Require(result == kImportUnsupported, "selector {} is answered with {} instead of {}", selector, result,
                static_cast<int>(kImportUnsupported));
        RequireIntact(fmt::format("what param1 of selector {} points at", selector), parameters.ChangedOutside());
        RequireIntact(fmt::format("what param2 of selector {} points at", selector), record.ChangedOutside());
    }
}

void CheckBundleLayout(Examination& examination) {
    const zelcore::Bundle bundle(examination.BundleFolder());
    static_cast<void>(bundle.Executable());
    if (bundle.Version().empty()) {
        examination.Warn("its Info.plist names no version (CFBundleShortVersionString)");
    }
}

void CheckEntryPoint(Examination& examination) {
    const std::filesystem::path executable = zelcore::Bundle(examination.BundleFolder()).Executable();
    const RawImporter plugin(executable);
    std::string others;
    for (const std::string& name : ExportedSymbols(executable)) {
        if (name != kImportEntryName) {
            others += (others.empty() ? "" : ", ") + name;
        }
    }
    if (!others.empty()) {
        examination.Warn("it exports more than its entry point, which can clash with other plug-ins: " + others);
    }
}

void CheckInitAnswer(Examination& examination) {
    const RawImporter& plugin = examination.Plugin();
    for (const Placement& placement : kPlacements) {
        GuardedRecord<imImportInfoRec> record(placement);
        const std::int32_t answer = plugin.Call(kImportInit, record.Data(), nullptr);
        Require(answer == kImportInitAnswer, "Init is answered with {} instead of {}", answer,
                static_cast<int>(kImportInitAnswer));
        const imImportInfoRec info = record.Get();
        const std::array flags = {info.capability28, info.capability32, info.capability36, info.capability44};
        Require(std::ranges::all_of(flags, [](std::uint32_t flag) { return flag == 1; }),
                "the capability flags at bytes 28, 32, 36 and 44 are {}, {}, {} and {} instead of 1", flags[0],
                flags[1], flags[2], flags[3]);
        RequireIntact("the record of Init", record.ChangedOutside({{offsetof(imImportInfoRec, capability28), 12},
                                                                   {offsetof(imImportInfoRec, capability44), 4}}));
    }
}

void CheckReservedSelector(Examination& examination) {
    GuardedBytes parameters(1024);
    GuardedBytes record(1024);
    const std::int32_t answer = examination.Plugin().Call(kImportReserved28, parameters.Data(), record.Data());
    Require(answer == kImportReserved28Answer, "selector {} is answered with {} instead of {}",
            static_cast<int>(kImportReserved28), answer, static_cast<int>(kImportReserved28Answer));
    RequireIntact("what param1 of selector 28 points at", parameters.ChangedOutside());
    RequireIntact("what param2 of selector 28 points at", record.ChangedOutside());
}

void CheckUnknownSelectors(Examination& examination) {
    constexpr std::int32_t kHighest = 300;  // well past the last one in use
    constexpr int kDrawn = 100;
    const RawImporter& plugin = examination.Plugin();
    for (std::int32_t selector = -kHighest; selector <= kHighest; ++selector) {
        if (!IsInUse(selector)) {
            RequireUnknown(plugin, selector);
        }
    }
    RequireUnknown(plugin, std::numeric_limits<std::int32_t>::min());
    RequireUnknown(plugin, std::numeric_limits<std::int32_t>::max());
    for (int i = 0; i < kDrawn; ++i) {
        const auto selector = static_cast<std::int32_t>(examination.AnyBits() & 0xFFFFFFFFU);
        if (!IsInUse(selector)) {
            RequireUnknown(plugin, selector);
        }
    }
}

}  // namespace

std::span<const Promise> LoadingPromises() {
    static constexpr std::array kRows = {
        Promise{"bundle-layout", "The bundle names its identifier and its executable, and has one for this platform.",
                CheckBundleLayout, Gate::ShutWhenAtFault},
        Promise{"entry-point", "The executable loads as it is and exports xImportEntry, and nothing else.",
                CheckEntryPoint, Gate::ShutWhenAtFault},
        Promise{"init-answer", "Init is answered with 400, and sets the four capability flags and no other byte.",
                CheckInitAnswer, Gate::ShutWhenEnded},
        Promise{"reserved-selector", "Selector 28 is answered with 100, and nothing is written.",
                CheckReservedSelector},
        Promise{"unknown-selectors", "Every selector that is not in use is answered with 3, and nothing is written.",
                CheckUnknownSelectors},
    };
    return kRows;
}

}  // namespace lineup::validation
