// Faults of audio and of waveform overviews.
#include "Src/BarsAndToneImporter/BarsAndToneInfo.h"
#include "Tests/Faults/Faults.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <cstring>
#include <limits>
#include <utility>

namespace faults {

namespace {

// Serves audio with settings that are changed first.
template <class Change>
auto WithSettings(Change change) {
    return [change](const Request& asked) {
        imImportAudioRec7 request = asked.As<imImportAudioRec7>();
        if (request.prefs == nullptr) {
            return asked.Rightly();
        }
        BarsAndToneInfo settings;
        std::memcpy(&settings, request.prefs, sizeof settings);
        change(settings);
        request.prefs = &settings;
        return test::ServeRightly(asked.selector, &request);
    };
}

// A channel that every host hands over, whatever the clip has.
template <std::size_t kChannel>
auto WritesChannel() {
    return After<imImportAudioRec7>([](const imImportAudioRec7& request) {
        if (request.count > 0) {
            request.buffers[kChannel][0] = 0.0F;
        }
    });
}

std::int32_t PlayOddRatesInEightChannels(const Request& asked) {
    const auto& request = asked.As<imImportAudioRec7>();
    BarsAndToneInfo settings;
    std::memcpy(&settings, request.prefs != nullptr ? request.prefs : &settings, sizeof settings);
    if (settings.sampleRate < 8000.0F && request.count > 0) {
        request.buffers[std::max(6U, settings.numChannels) + 1][0] = 0.0F;
    }
    return asked.Rightly();
}

std::int32_t SwapCentreAndSurround(const Request& asked) {
    imImportAudioRec7 request = asked.As<imImportAudioRec7>();
    std::array<float*, 6> buffers{};
    std::copy_n(request.buffers, buffers.size(), buffers.begin());
    std::swap(buffers[4], buffers[2]);
    request.buffers = buffers.data();
    return test::ServeRightly(asked.selector, &request);
}

std::int32_t Remember(const Request& asked) {
    static std::atomic<int> count{0};
    imImportAudioRec7 request = asked.As<imImportAudioRec7>();
    request.position += ++count % 3 == 0 ? 1 : 0;
    return test::ServeRightly(asked.selector, &request);
}

std::vector<Fault> AudioFaults() {
    return {
        {"LeavesTheLastSample",
         "Leaves the last sample of every audio request unwritten.",
         kImportAudio,
         Changed<imImportAudioRec7>([](imImportAudioRec7& request) { request.count -= request.count > 0 ? 1 : 0; }),
         {{"audio-buffers", "was left unwritten"}}},
        {"WritesPastTheBlock",
         "Writes audio in whole blocks of four samples.",
         kImportAudio,
         Changed<imImportAudioRec7>([](imImportAudioRec7& request) { request.count = (request.count + 3) / 4 * 4; }),
         {{"audio-buffers", "written to past the block"}}},
        {"WritesAnotherChannel",
         "Writes to a channel that no clip has.",
         kImportAudio,
         WritesChannel<7>(),
         {{"audio-buffers", "channel 7, sample 0 was written and should not be"}}},
        {"WritesTheLastOfSix",
         "Writes to the sixth channel of every clip.",
         kImportAudio,
         WritesChannel<5>(),
         {{"clip-channels", "channel 5, sample 0 was written and should not be"}, {"audio-buffers", "", "passed"}}},
        {"SamplesAreNaN",
         "Makes a sample in the middle of a request that is NaN.",
         kImportAudio,
         After<imImportAudioRec7>([](const imImportAudioRec7& request) {
             if (request.count > 4) {
                 request.buffers[0][request.count / 2] = std::numeric_limits<float>::quiet_NaN();
             }
         }),
         {{"audio-buffers", "is not finite"}}},
        {"AudioChangesItsRequest",
         "Counts the samples that are left in the record of the request.",
         kImportAudio,
         After<imImportAudioRec7>([](imImportAudioRec7& request) { request.count = 0; }),
         {{"audio-records", "changed at byte 8"}}},
        {"AudioChangesTheSettings",
         "Counts audio requests in the version of the settings.",
         kImportAudio,
         Before<imImportAudioRec7>([](const imImportAudioRec7& request) {
             if (request.prefs != nullptr) {
                 ++*static_cast<unsigned char*>(request.prefs);
             }
         }),
         {{"audio-records", "changed at byte 0"}}},
        {"SlightlyTooLoud",
         "Plays steady tones a thousandth too loud.",
         kImportAudio,
         WithSettings([](BarsAndToneInfo& settings) { settings.amplitude *= 1.001F; }),
         {{"steady-tone", "instead of"}}},
        {"SwapsCentreAndSurround",
         "Orders the channels of 5.1 as files do: the centre third.",
         kImportAudio,
         SwapCentreAndSurround,
         {{"ident-schedules", "channel 2"}}},
        {"RestartsThePhase",
         "Begins every audio request as if it were the first of the clip.",
         kImportAudio,
         Changed<imImportAudioRec7>([](imImportAudioRec7& request) { request.position = 0; }),
         {{"audio-splits", "does not join"}, {"audio-joins", "does not join"}}},
        {"PositionsOf32Bits",
         "Counts positions in 32 bits.",
         kImportAudio,
         Changed<imImportAudioRec7>(
             [](imImportAudioRec7& request) { request.position = static_cast<std::int32_t>(request.position); }),
         {{"audio-positions", "does not join"}, {"audio-far", "cycles away"}}},
        {"NothingBeforeTheBeginning",
         "Plays what lies before the beginning of the clip as its beginning.",
         kImportAudio,
         Changed<imImportAudioRec7>(
             [](imImportAudioRec7& request) { request.position = std::max(request.position, std::int64_t{0}); }),
         {{"audio-positions", "does not join"}, {"audio-negative", "cycles away"}}},
        {"RoundsTheRate",
         "Knows sample rates in whole kilohertz alone.",
         kImportAudio,
         WithSettings([](BarsAndToneInfo& settings) {
             settings.sampleRate = std::round(settings.sampleRate / 1000.0F) * 1000.0F;
         }),
         {{"odd-rates", "at 11025 Hz"}}},
        {"PlaysUnknownIdents",
         "Plays a sequence for one that it does not know.",
         kImportAudio,
         WithSettings([](BarsAndToneInfo& settings) {
             settings.identifierFormat = std::min(settings.identifierFormat, BLITS5_1);
         }),
         {{"clip-odd-numbers", "was written and should not be"}}},
        {"PlaysOddRatesInEightChannels",
         "Writes more channels than it described at rates that no dialog makes.",
         kImportAudio,
         PlayOddRatesInEightChannels,
         {{"hostile-audio", "with hostile settings: channel"}}},
        {"RemembersRequests",
         "Plays every third request a sample late.",
         kImportAudio,
         Remember,
         {{"any-order", "is not the same"}}},
    };
}

std::vector<Fault> PeakFaults() {
    return {
        {"LeavesTheLastPeak",
         "Leaves the last peak of every request unwritten.",
         kImportPeakAudio,
         Changed<imPeakAudioRec>([](imPeakAudioRec& request) { request.count -= request.count > 0 ? 1 : 0; }),
         {{"peak-buffers", "was left unwritten"}}},
        {"PeaksUpsideDown",
         "Writes maxima for minima and minima for maxima.",
         kImportPeakAudio,
         Changed<imPeakAudioRec>([](imPeakAudioRec& request) {
             float** const maxima = request.maxima;
             request.maxima = request.minima;
             request.minima = maxima;
         }),
         {{"peak-buffers", "above its maximum"}}},
        {"PeaksChangeTheirRequest",
         "Advances the position in the record of a peak request.",
         kImportPeakAudio,
         After<imPeakAudioRec>([](imPeakAudioRec& request) { request.position += request.count; }),
         {{"peak-records", "changed at byte 16"}}},
        {"PeaksRestart",
         "Begins every peak request as if it were the first of the clip.",
         kImportPeakAudio,
         Changed<imPeakAudioRec>([](imPeakAudioRec& request) { request.position = 0; }),
         {{"peak-splits", "do not join"}}},
        {"PeaksAreHalfTheAudio",
         "Draws peaks at half the level of the audio.",
         kImportPeakAudio,
         After<imPeakAudioRec>([](const imPeakAudioRec& request) {
             for (std::int32_t i = 0; i < request.count; ++i) {
                 request.maxima[0][i] /= 2;
                 request.minima[0][i] /= 2;
             }
         }),
         {{"peaks-match-audio", "the audio of its time"}}},
        {"TakesPeakCountsAsUnsigned",
         "Serves a peak request for fewer than no values.",
         kImportPeakAudio,
         Before<imPeakAudioRec>([](const imPeakAudioRec& request) {
             if (request.count < 0) {
                 request.maxima[0][0] = 0.0F;
             }
         }),
         {{"hostile-peaks", "written to past the block"}}},
    };
}

}  // namespace

std::vector<Fault> SoundFaults() {
    std::vector<Fault> faults = AudioFaults();
    const std::vector<Fault> ofPeaks = PeakFaults();
    faults.insert(faults.end(), ofPeaks.begin(), ofPeaks.end());
    return faults;
}

}  // namespace faults
