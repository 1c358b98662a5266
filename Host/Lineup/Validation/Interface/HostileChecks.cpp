#include "Host/Interface/Importer/ImportSelectors.h"
#include "Host/Lineup/Validation/Examination/Requests.h"
#include "Host/Lineup/Validation/Probes/HostileNumbers.h"
#include "Host/Lineup/Validation/PromiseGroups.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <vector>

namespace lineup::validation {

namespace {

constexpr int kRequests = 4000;

// Settings that a person's file may hold: good ones with some of their bytes spoiled, or none that were ever good.
class SpoiledSettings {
public:
    explicit SpoiledSettings(Examination& examination)
        : mRandom(&examination.Numbers()), mNumbers(*mRandom), mClips(AllClips(examination)) {}

    [[nodiscard]] SettingsBytes Draw() {
        SettingsBytes settings = mClips[mRandom->Below(mClips.size())].settings;
        if (mRandom->Below(8) == 0) {
            std::ranges::generate(settings, [&] { return static_cast<std::uint8_t>(mRandom->Below(256)); });
        } else {
            mNumbers.Spoil(settings);
        }
        return settings;
    }
    [[nodiscard]] HostileNumbers& Numbers() noexcept { return mNumbers; }

private:
    Random* mRandom;
    HostileNumbers mNumbers;
    std::vector<TestClip> mClips;
};

// The channels of a clip that a host would go on with; 0 when the plug-in refuses the settings, or describes what no
// host can open.
std::size_t DescribedChannels(const RawImporter& plugin, void* prefs) {
    const Description description(plugin, prefs, 48000.0F);
    const imFileInfoRec8 info = description.Record();
    const bool opens = description.Result() == kImportNoError && info.hasAudio != 0 &&
                       info.numChannels <= kMostChannels && info.sampleRate > 0 && info.sampleRate <= kHighestRateHz;
    return opens ? info.numChannels : 0;
}

// Any answer will do, and any samples: but where they go is promised.
void RequireHarmless(const GuardedBytes& prefs, const GuardedBuffers& buffers, std::size_t channels,
                     const std::string& what) {
    RequireIntact("the settings of " + what, prefs.ChangedOutside());
    RequireIntact(what, buffers.WrittenFrom(std::max(channels, kFewestBuffers)));
}

void RequireHarmlessAudio(const RawImporter& plugin, const SettingsBytes& settings, const Stretch& stretch) {
    GuardedBytes prefs(settings, kPlacements.back());
    if (const std::size_t channels = DescribedChannels(plugin, AsPrefs(prefs)); channels > 0) {
        GuardedBuffers buffers(BuffersFor(channels), stretch.count);
        SendAudio(plugin, {.prefs = AsPrefs(prefs)}, stretch, buffers);
        RequireHarmless(prefs, buffers, channels, Text(stretch) + " with hostile settings");
    }
}

void RequireHarmlessPeaks(const RawImporter& plugin, const SettingsBytes& settings, const PeakStretch& stretch) {
    GuardedBytes prefs(settings, kPlacements.back());
    if (const std::size_t channels = DescribedChannels(plugin, AsPrefs(prefs)); channels > 0) {
        const auto size = static_cast<std::size_t>(std::max(stretch.count, 0));
        GuardedBuffers maxima(BuffersFor(channels), size);
        GuardedBuffers minima(BuffersFor(channels), size);
        SendPeaks(plugin, {.prefs = AsPrefs(prefs)}, stretch, maxima, minima);
        RequireHarmless(prefs, maxima, channels, Text(stretch) + " with hostile settings, maxima");
        RequireHarmless(prefs, minima, channels, Text(stretch) + " with hostile settings, minima");
    }
}

void CheckHostileDescriptions(Examination& examination) {
    SpoiledSettings spoiled(examination);
    for (int i = 0; i < kRequests; ++i) {
        const SettingsBytes settings = spoiled.Draw();
        GuardedBytes prefs(settings, kPlacements.back());
        const Description description(examination.Plugin(), AsPrefs(prefs), spoiled.Numbers().Float());
        description.RequireRecordIntact();
        RequireIntact("the settings of a description", prefs.ChangedOutside());
    }
}

void CheckHostileAudio(Examination& examination) {
    SpoiledSettings spoiled(examination);
    HostileNumbers& numbers = spoiled.Numbers();
    const std::vector<TestClip> clips = WithSound(AllClips(examination));
    for (const std::int64_t position : kHostilePositions) {
        for (const TestClip& clip : clips) {
            RequireHarmlessAudio(examination.Plugin(), clip.settings, {.position = position, .count = 200});
        }
    }
    for (int i = 0; i < kRequests; ++i) {
        const SettingsBytes settings = spoiled.Draw();
        RequireHarmlessAudio(examination.Plugin(), settings,
                             {.position = numbers.Position(), .count = static_cast<std::uint32_t>(numbers.Count())});
    }
}

void CheckHostilePeaks(Examination& examination) {
    SpoiledSettings spoiled(examination);
    HostileNumbers& numbers = spoiled.Numbers();
    for (const TestClip& clip : WithSound(AllClips(examination))) {
        for (const std::int32_t count : {0, -1, -1000, std::numeric_limits<std::int32_t>::min()}) {
            RequireHarmlessPeaks(examination.Plugin(), clip.settings,
                                 {.position = 0, .rateHz = 100.0F, .count = count});
        }
    }
    for (int i = 0; i < kRequests; ++i) {
        const SettingsBytes settings = spoiled.Draw();
        RequireHarmlessPeaks(examination.Plugin(), settings,
                             {.position = numbers.Position(), .rateHz = numbers.Float(), .count = numbers.Count()});
    }
}

}  // namespace

std::span<const Promise> HostilePromises() {
    static constexpr std::array kRows = {
        Promise{"hostile-descriptions",
                "Whatever its settings hold, a description ends, and writes to its fields only.",
                CheckHostileDescriptions},
        Promise{"hostile-audio", "Whatever its numbers, an audio request ends, and writes nowhere but to its samples.",
                CheckHostileAudio},
        Promise{"hostile-peaks", "Whatever its numbers, a peak request ends, and writes nowhere but to its values.",
                CheckHostilePeaks},
    };
    return kRows;
}

}  // namespace lineup::validation
