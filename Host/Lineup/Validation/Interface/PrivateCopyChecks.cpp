#include "Host/Interface/Importer/ImportRecords.h"
#include "Host/Interface/Importer/ImportSelectors.h"
#include "Host/Lineup/Validation/Checks.h"
#include "Host/Lineup/Validation/Clip/Sounds.h"
#include "Host/Lineup/Validation/Examination/Requests.h"
#include "Host/Lineup/Validation/Interface/HeapUse.h"
#include "Host/Lineup/Validation/Probes/GuardedFrame.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace lineup::validation {

namespace {

// Some of each clip's sound, from its beginning.
constexpr Stretch kStretch{.position = 0, .count = 500};

Samples ReadWith(const RawImporter& plugin, const SettingsPointers& settings, std::size_t channels) {
    GuardedBuffers buffers(kMostChannels, kStretch.count);
    const std::int32_t result = SendAudio(plugin, settings, kStretch, buffers);
    Require(result == kImportNoError, "{} is answered with {} instead of 0", Text(kStretch), result);
    RequireIntact(Text(kStretch), buffers.LeftUnwritten(channels));
    Samples samples;
    for (std::size_t c = 0; c < channels; ++c) {
        const std::span<const float> channel = buffers.Channel(c);
        samples.emplace_back(channel.begin(), channel.end());
    }
    return samples;
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
// once, on first use, is no leak: it must grow in every round.
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

}  // namespace

void CheckPrivateCopies(Examination& examination) {
    const RawImporter& plugin = examination.Plugin();
    for (const Sound& sound : Sounds()) {
        GuardedRecord<BarsAndToneInfo> prefs(sound.settings);
        const Description first(plugin, prefs.Data(), 48000.0F);
        const Description second(plugin, prefs.Data(), 48000.0F);
        void* const copy = first.Record().privateData;
        Require(copy != nullptr, "{} gets no private copy of its settings", sound.name);
        Require(copy != second.Record().privateData, "two descriptions of {} share one private copy", sound.name);
        Require(copy != prefs.Data(), "the private copy of {} is the host's own settings", sound.name);

        const Samples expected = ReadWith(plugin, {.prefs = prefs.Data()}, sound.channels);
        prefs.Put(BarsAndToneInfo{});  // what the host does with its settings later is no matter
        Require(ReadWith(plugin, {.privateData = copy}, sound.channels) == expected,
                "the private copy of {} does not sound like its settings", sound.name);
    }
}

void CheckSettingsOrder(Examination& examination) {
    const RawImporter& plugin = examination.Plugin();
    BarsAndToneInfo settings;
    GuardedRecord<BarsAndToneInfo> of1000Hz(settings);
    settings.frequency = 440.0F;
    GuardedRecord<BarsAndToneInfo> of440Hz(settings);
    const Description description(plugin, of440Hz.Data(), 48000.0F);
    void* const copyOf440Hz = description.Record().privateData;

    Require(ReadWith(plugin, {.prefs = of1000Hz.Data(), .privateData = copyOf440Hz}, 2) ==
                ReadWith(plugin, {.prefs = of1000Hz.Data()}, 2),
            "a request with settings and a private copy does not go by the settings");

    const std::string what = Text(kStretch);
    GuardedBuffers buffers(kMostChannels, kStretch.count);
    const std::int32_t audio = SendAudio(plugin, {}, kStretch, buffers);
    Require(audio == kImportNoSettings, "{} without settings is answered with {} instead of {}", what, audio,
            static_cast<int>(kImportNoSettings));
    RequireIntact(what + " without settings", buffers.WrittenFrom(0));
    const std::int32_t peaks =
        SendPeaks(plugin, {}, {.position = 0, .rateHz = 100.0F, .count = kStretch.count}, buffers, buffers);
    Require(peaks == kImportNoSettings, "peaks without settings are answered with {} instead of {}", peaks,
            static_cast<int>(kImportNoSettings));
    RequireIntact("peaks without settings", buffers.WrittenFrom(0));
}

void CheckReleaseFrees(Examination& examination) {
    const RawImporter& plugin = examination.Plugin();
    RequireReleased(plugin, nullptr);
    SkipUnlessHeapIsCounted();
    GuardedRecord<BarsAndToneInfo> prefs(BarsAndToneInfo{});
    RequireSteadyHeap("descriptions that were released", 1000, [&] {
        imFileInfoRec8 info{};
        info.sampleRate = 48000.0F;
        info.prefs = prefs.Data();
        plugin.Call(kImportGetInfo, nullptr, &info);
        RequireReleased(plugin, info.privateData);
    });
}

void CheckRequestsKeepNoMemory(Examination& examination) {
    SkipUnlessHeapIsCounted();
    const RawImporter& plugin = examination.Plugin();
    for (const Sound& sound : Sounds()) {
        GuardedRecord<BarsAndToneInfo> prefs(sound.settings);
        const Stretch stretch{.position = 4700, .count = 300};  // across a step of every sequence
        RequireSteadyHeap("audio requests", 200, [&] { ReadWith(plugin, {.prefs = prefs.Data()}, sound.channels); });
        RequireSteadyHeap("audio requests across a step", 200,
                          [&] { ReadAudio(plugin, sound.settings, sound.channels, stretch); });
        RequireSteadyHeap("peak requests", 200, [&] {
            ReadPeaks(plugin, sound.settings, sound.channels, {.position = 4700, .rateHz = 100.0F, .count = 30});
        });
    }
    RequireSteadyHeap("frame requests", 50, [&] {
        const GuardedFrame frame({.width = 64, .height = 36, .pixelFormat = kPixelFormat_VUYA_32f});
        DrawFrame(plugin, frame);
    });
    RequireSteadyHeap("settings requests", 200, [&] {
        BarsAndToneInfo settings;
        imGetPrefsRec record{};
        plugin.Call(kImportGetPrefs, nullptr, &record);
        record.prefs = &settings;
        record.useDefaults = 1;
        plugin.Call(kImportGetPrefs, nullptr, &record);
    });
}

}  // namespace lineup::validation
