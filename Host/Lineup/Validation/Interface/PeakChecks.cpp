#include "Host/Lineup/Validation/Examination/Joins.h"
#include "Host/Lineup/Validation/Examination/Requests.h"
#include "Host/Lineup/Validation/PromiseGroups.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <tuple>

namespace lineup::validation {

namespace {

void RequireSame(const TestClip& clip, const PeakStretch& part, const Samples& peaks, const Samples& whole,
                 std::size_t first, float bound) {
    for (std::size_t c = 0; c < peaks.size(); ++c) {
        for (std::size_t i = 0; i < peaks[c].size(); ++i) {
            const float inWhole = whole[c][first + i];
            const bool joins = std::abs(peaks[c][i] - inWhole) <= bound;
            if (!joins) {
                Fail("{} of {} do not join what is read at once: channel {}, peak {} is {} instead of {}, +-{:.3g}",
                     Text(part), clip.name, c, i, peaks[c][i], inWhole, bound);
            }
        }
    }
}

// Pieces that begin at whole samples, which a peak is a whole number of.
void RequirePeaksJoin(Examination& examination, const TestClip& clip, std::int64_t samplesAPeak) {
    constexpr std::int32_t kCount = 1200;
    const float rateHz = clip.rateHz / static_cast<float>(samplesAPeak);
    const RawImporter& plugin = examination.Plugin();
    const PeakStretch whole{
        .position = static_cast<std::int64_t>(examination.Below(100)) * 4800, .rateHz = rateHz, .count = kCount};
    const Peaks expected = ReadPeaks(plugin, clip, whole);
    const auto samples = static_cast<std::uint32_t>(kCount * samplesAPeak);
    const float bound = PieceBound(ReadAudio(plugin, clip, {.position = whole.position, .count = samples}));
    for (int i = 0; i < 4; ++i) {
        const auto first = static_cast<std::int32_t>(examination.Below(kCount));
        const PeakStretch part{
            .position = whole.position + first * samplesAPeak, .rateHz = rateHz, .count = kCount - first};
        const Peaks peaks = ReadPeaks(plugin, clip, part);
        RequireSame(clip, part, peaks.maxima, expected.maxima, static_cast<std::size_t>(first), bound);
        RequireSame(clip, part, peaks.minima, expected.minima, static_cast<std::size_t>(first), bound);
    }
}

void CheckPeakBuffers(Examination& examination) {
    for (const TestClip& clip : WithSound(AllClips(examination))) {
        for (const float rateHz : {25.0F, 100.0F, 999.0F, 1000.0F, 2000.0F, 48000.0F}) {
            for (const std::int32_t count : {0, 1, 2, 3, 4, 5, 17, 480, 1601}) {
                const auto position = static_cast<std::int64_t>(examination.Below(2000000));
                std::ignore =
                    ReadPeaks(examination.Plugin(), clip, {.position = position, .rateHz = rateHz, .count = count});
            }
        }
    }
}

void CheckPeakRecords(Examination& examination) {
    for (const TestClip& clip : WithSound(AllClips(examination))) {
        for (const Placement& placement : kPlacements) {
            for (const float rateHz : {100.0F, 2000.0F}) {
                std::ignore = ReadPeaks(examination.Plugin(), clip, {.position = 132000, .rateHz = rateHz, .count = 30},
                                        placement);
            }
        }
    }
}

void CheckPeakSplits(Examination& examination) {
    for (const TestClip& clip : WithSound(AllClips(examination))) {
        for (const std::int64_t samplesAPeak : {480, 24}) {
            RequirePeaksJoin(examination, clip, samplesAPeak);
        }
    }
}

}  // namespace

std::span<const Promise> PeakPromises() {
    static constexpr std::array kRows = {
        Promise{"peak-buffers", "Peaks fill a channel whole or leave it alone, and no minimum is above its maximum.",
                CheckPeakBuffers},
        Promise{"peak-records", "Peak requests leave their record and the settings alone, wherever these lie.",
                CheckPeakRecords},
        Promise{"peak-splits", "Peaks that are read in pieces join to what they are when read at once.",
                CheckPeakSplits},
    };
    return kRows;
}

}  // namespace lineup::validation
