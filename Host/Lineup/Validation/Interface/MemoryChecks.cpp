#include "Host/Interface/Importer/ImportSelectors.h"
#include "Host/Lineup/Validation/Examination/Requests.h"
#include "Host/Lineup/Validation/Interface/HeapUse.h"
#include "Host/Lineup/Validation/PromiseGroups.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <tuple>
#include <vector>

namespace lineup::validation {

namespace {

constexpr float kHostRateHz = 48000.0F;

bool MakesPrivateCopies(const RawImporter& plugin, const SettingsBytes& settings) {
    GuardedBytes prefs(settings);
    return Description(plugin, AsPrefs(prefs), kHostRateHz).PrivateData() != nullptr;
}

void RequireReleased(const RawImporter& plugin, void* privateData) {
    const std::int32_t result = plugin.Call(kImportReleasePrivateData, nullptr, privateData);
    Require(result == kImportNoError, "the release of a private copy is answered with {} instead of 0", result);
}

// A heap that is not the C library's own tells nothing of what is taken from it.
void SkipUnlessHeapIsCounted() {
    constexpr std::size_t kBytes = 100000;
    const std::int64_t before = HeapBytesInUse();
    const std::vector<char> block(kBytes);
    if (HeapBytesInUse() - before < static_cast<std::int64_t>(block.size())) {
        throw Skipped("the memory that this process takes cannot be counted: its allocator is not the C library's");
    }
}

// Does `work` again and again and requires that the heap does not grow with it. What a plug-in sets up
// once, on first use, is not a leak: it must grow in every round.
template <class Work>
void RequireSteadyHeap(const char* what, int timesARound, Work work) {
    constexpr int kRounds = 4;
    const auto round = [&] {
        for (int i = 0; i < timesARound; ++i) {
            work();
        }
    };
    round();
    std::int64_t smallestGrowth = 0;
    for (int r = 0; r < kRounds; ++r) {
        const std::int64_t before = HeapBytesInUse();
        round();
        const std::int64_t growth = HeapBytesInUse() - before;
        smallestGrowth = r == 0 ? growth : std::min(smallestGrowth, growth);
    }
    Require(smallestGrowth <= 0, "{} leak: {} bytes stay behind after {} of them, {:.1f} bytes each", what,
            smallestGrowth, timesARound, static_cast<double>(smallestGrowth) / timesARound);
}

void CheckReleaseFrees(Examination& examination) {
    const RawImporter& plugin = examination.Plugin();
    const SettingsBytes defaults = MakeDefaults(examination, kHostRateHz);
    if (!MakesPrivateCopies(plugin, defaults)) {
        throw Skipped("its descriptions make no private copy: privateData is null");
    }
    RequireReleased(plugin, nullptr);
    SkipUnlessHeapIsCounted();
    GuardedBytes prefs(defaults);
    RequireSteadyHeap("descriptions that were released", 1000, [&] {
        imFileInfoRec8 info{};
        info.sampleRate = kHostRateHz;
        info.prefs = AsPrefs(prefs);
        plugin.Call(kImportGetInfo, nullptr, &info);
        RequireReleased(plugin, info.privateData);
    });
}

void RequireSteadyHeapOf(const RawImporter& plugin, const TestClip& clip) {
    constexpr std::int64_t kAcrossAStep = 4700;  // of every known clip
    RequireSteadyHeap("audio requests", 200,
                      [&] { std::ignore = ReadAudio(plugin, clip, {.position = 0, .count = 500}); });
    RequireSteadyHeap("audio requests across a step", 200,
                      [&] { std::ignore = ReadAudio(plugin, clip, {.position = kAcrossAStep, .count = 300}); });
    if (ServesPeaks(plugin, clip)) {
        RequireSteadyHeap("peak requests", 200, [&] {
            std::ignore = ReadPeaks(plugin, clip, {.position = kAcrossAStep, .rateHz = 100.0F, .count = 30});
        });
    }
}

void CheckRequestsKeepNoMemory(Examination& examination) {
    SkipUnlessHeapIsCounted();
    const RawImporter& plugin = examination.Plugin();
    const std::vector<TestClip> clips = AllClips(examination);
    for (const TestClip& clip : clips) {
        if (clip.hasAudio) {
            RequireSteadyHeapOf(plugin, clip);
        }
    }
    if (clips.front().hasVideo) {
        RequireSteadyHeap("frame requests", 50, [&] {
            const GuardedFrame frame({.width = 64, .height = 36, .pixelFormat = kPixelFormat_VUYA_32f});
            DrawFrame(plugin, frame);
        });
    }
    RequireSteadyHeap("settings requests", 200, [&] { std::ignore = MakeDefaults(examination, kHostRateHz); });
}

}  // namespace

std::span<const Promise> MemoryPromises() {
    static constexpr std::array kRows = {
        Promise{"release-frees", "A private copy that is released is freed.", CheckReleaseFrees},
        Promise{"requests-keep-no-memory", "No request takes memory that it does not give back.",
                CheckRequestsKeepNoMemory},
    };
    return kRows;
}

}  // namespace lineup::validation
