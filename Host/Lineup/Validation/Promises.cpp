#include <lineup/Validation.h>
#include "Host/Lineup/Validation/Checks.h"

#include <algorithm>
#include <array>

namespace lineup::validation {

namespace {

struct OutcomeRow {
    std::string_view name;
    bool isFault;
};

// In the order of Outcome.
constexpr std::array<OutcomeRow, 6> kOutcomes = {{
    {"passed", false},
    {"warning", false},
    {"failed", true},
    {"skipped", false},
    {"crashed", true},
    {"timed out", true},
}};
static_assert(kOutcomes.size() == static_cast<std::size_t>(Outcome::kTimedOut) + 1);

constexpr std::array kPromises = {
    // Loading and dispatch.
    Promise{"bundle-layout", "The bundle names its identifier and its executable, and has one for this platform.",
            CheckBundleLayout, Gate::kShutWhenAtFault},
    Promise{"entry-point", "The executable loads as it is and exports xImportEntry, and nothing else.", CheckEntryPoint,
            Gate::kShutWhenAtFault},
    Promise{"init-answer", "Init is answered with 400, and sets the four capability flags and no other byte.",
            CheckInitAnswer, Gate::kShutWhenEnded},
    Promise{"reserved-selector", "Selector 28 is answered with 100, and nothing is written.", CheckReservedSelector},
    Promise{"unknown-selectors", "Every selector that is not in use is answered with 3, and nothing is written.",
            CheckUnknownSelectors},
    // Enumerations.
    Promise{"file-formats", "The list of file formats has XQNV, ends with 301, and is written to its fields only.",
            CheckFileFormats},
    Promise{"pixel-formats", "The list of pixel formats has VUx7, ends with 301, and is written to its field only.",
            CheckPixelFormats},
    // Descriptions.
    Promise{"description-with-settings",
            "A clip is described with its settings' channels and rate, and as five seconds.",
            CheckDescriptionWithSettings},
    Promise{"description-without-settings", "A clip without settings is described as stereo at the host's rate.",
            CheckDescriptionWithoutSettings},
    Promise{"description-record", "A description writes to its fields and to no other byte, wherever the record lies.",
            CheckDescriptionRecord},
    Promise{"hostile-descriptions", "Settings that no dialog makes are described as they stand.",
            CheckHostileDescriptions},
    // Private copies and memory.
    Promise{"private-copies", "Every description makes a private copy of its own, which sounds like the settings.",
            CheckPrivateCopies},
    Promise{"settings-order", "Settings go before the private copy; without either, 5 is answered and nothing written.",
            CheckSettingsOrder},
    Promise{"release-frees", "A private copy that is released is freed.", CheckReleaseFrees},
    Promise{"requests-keep-no-memory", "No request takes memory that it does not give back.",
            CheckRequestsKeepNoMemory},
    // Settings.
    Promise{"settings-size", "Asked without a buffer, the settings are 32 bytes, and nothing else is written.",
            CheckSettingsSize},
    Promise{"settings-defaults", "Silent defaults are those of a new clip at the host's rate, 32 bytes and no more.",
            CheckSettingsDefaults},
    // Audio.
    Promise{"audio-buffers", "Audio fills every sample asked for with a finite one, and writes nowhere else.",
            CheckAudioBuffers},
    Promise{"audio-records", "Audio requests leave their record and the settings alone, wherever these lie.",
            CheckAudioRecords},
    Promise{"steady-tone", "A steady tone is the sine that its settings name, sample by sample.", CheckSteadyTone},
    Promise{"ident-schedules", "Identification sequences sound on the channels, when and as high as they are known to.",
            CheckIdentSchedules},
    Promise{"audio-splits", "Audio that is read in pieces joins to what it is when read at once, wherever it is cut.",
            CheckAudioSplits},
    Promise{"audio-far", "Far from its beginning a clip sounds as it does near it.", CheckAudioFar},
    Promise{"audio-negative", "Before its beginning a clip sounds as it does after it.", CheckAudioNegative},
    Promise{"odd-rates", "At odd sample rates, too, audio is whole, in tune and joins.", CheckOddRates},
    Promise{"hostile-audio", "Whatever its numbers, an audio request ends, and writes nowhere but to its samples.",
            CheckHostileAudio},
    // Peaks.
    Promise{"peak-buffers", "Peaks fill every value asked for with a finite one, and write nowhere else.",
            CheckPeakBuffers},
    Promise{"peak-records", "Peak requests leave their record and the settings alone, wherever these lie.",
            CheckPeakRecords},
    Promise{"peak-splits", "Peaks that are read in pieces join to what they are when read at once.", CheckPeakSplits},
    Promise{"peaks-match-audio", "Peaks enclose the audio of their time, and no more.", CheckPeaksMatchAudio},
    Promise{"hostile-peaks", "Whatever its numbers, a peak request ends, and writes nowhere but to its values.",
            CheckHostilePeaks},
    // Frames.
    Promise{"frames-drawn-whole", "A frame of any size is drawn whole, always the same, and not one byte outside it.",
            CheckFramesDrawnWhole},
    Promise{"frame-records", "Frame requests leave their record alone, wherever it lies.", CheckFrameRecords},
    Promise{"frame-formats", "A frame in an unknown pixel format is answered with 3, and nothing is drawn.",
            CheckFrameFormats},
    Promise{"frames-of-no-size", "A frame of no size, or less, is answered with 0, and nothing is drawn.",
            CheckFramesOfNoSize},
    // All together.
    Promise{"any-order", "What a request gives does not depend on the requests before it.", CheckAnyOrder},
    Promise{"concurrent-requests", "Requests from eight threads at once give what they give one by one.",
            CheckConcurrentRequests},
};

}  // namespace

std::string_view OutcomeName(Outcome outcome) {
    return kOutcomes.at(static_cast<std::size_t>(outcome)).name;
}

bool IsFault(Outcome outcome) {
    return kOutcomes.at(static_cast<std::size_t>(outcome)).isFault;
}

bool ShutsTheGate(const Promise& promise, Outcome outcome) {
    switch (promise.gate) {
        case Gate::kShutWhenAtFault:
            return IsFault(outcome);
        case Gate::kShutWhenEnded:
            return outcome == Outcome::kCrashed || outcome == Outcome::kTimedOut;
        case Gate::kOpen:
            break;
    }
    return false;
}

std::span<const Promise> Promises() {
    return kPromises;
}

const Promise* FindPromise(std::string_view id) {
    const auto* const promise = std::ranges::find(kPromises, id, &Promise::id);
    return promise == kPromises.end() ? nullptr : promise;
}

}  // namespace lineup::validation
