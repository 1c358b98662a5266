#include "Host/Lineup/Validation/Examination/Joins.h"
#include "Host/Lineup/Validation/Examination/Requests.h"
#include "Host/Lineup/Validation/PromiseGroups.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <tuple>
#include <vector>

namespace lineup::validation {

namespace {

// The sound of a whole stretch of a clip, and how far a piece of it may stray.
class WholeSound {
public:
    WholeSound(const RawImporter& plugin, const TestClip& clip, const Stretch& stretch)
        : mPlugin(&plugin),
          mClip(&clip),
          mStretch(stretch),
          mSamples(ReadAudio(plugin, clip, stretch)),
          mBound(PieceBound(mSamples)) {}

    // Requires that samples [first, last) of the stretch are the same when they are read alone.
    void RequirePiece(std::uint32_t first, std::uint32_t last) const {
        const Stretch piece{.position = mStretch.position + first, .count = last - first};
        const Samples samples = ReadAudio(*mPlugin, *mClip, piece);
        for (std::size_t c = 0; c < samples.size(); ++c) {
            for (std::uint32_t i = 0; i < piece.count; ++i) {
                const float inWhole = mSamples[c][first + i];
                const bool joins = std::abs(samples[c][i] - inWhole) <= mBound;
                if (!joins) {
                    Fail("{}: {} does not join {}: channel {}, sample {} is {} instead of {}, +-{:.3g}", mClip->name,
                         Text(piece), Text(mStretch), c, piece.position + i, samples[c][i], inWhole, mBound);
                }
            }
        }
    }

private:
    const RawImporter* mPlugin;
    const TestClip* mClip;
    Stretch mStretch;
    Samples mSamples;
    float mBound;
};

void CheckAudioBuffers(Examination& examination) {
    const RawImporter& plugin = examination.Plugin();
    for (const TestClip& clip : WithSound(AllClips(examination))) {
        for (const std::uint32_t count : {0U, 1U, 2U, 3U, 4U, 5U, 7U, 8U, 15U, 16U, 17U, 63U, 480U, 1601U, 20001U}) {
            const auto position = static_cast<std::int64_t>(examination.Below(2000000));
            std::ignore = ReadAudio(plugin, clip, {.position = position, .count = count});
        }
    }
}

void CheckAudioRecords(Examination& examination) {
    for (const TestClip& clip : WithSound(AllClips(examination))) {
        for (const Placement& placement : kPlacements) {
            std::ignore = ReadAudio(examination.Plugin(), clip, {.position = 132000, .count = 100}, placement);
        }
    }
}

// Before the beginning, about the end, and where positions do not fit 32 bits. A piece that begins there joins.
void CheckAudioPositions(Examination& examination) {
    constexpr std::uint32_t kCount = 4800;
    constexpr std::array kRatesHz = {48000.0F, 44100.0F};
    for (const TestClip& clip : WithSound(NewClips(examination, kRatesHz))) {
        const auto hour = static_cast<std::int64_t>(clip.rateHz) * 3600;
        for (const std::int64_t position : {std::int64_t{0}, -hour, clip.durationSamples, 100 * hour, -100 * hour,
                                            std::int64_t{1} << 31, std::int64_t{1} << 32, -(std::int64_t{1} << 31)}) {
            const WholeSound whole(examination.Plugin(), clip, {.position = position - kCount / 2, .count = kCount});
            whole.RequirePiece(0, kCount / 2);
            whole.RequirePiece(kCount / 2, kCount);
        }
    }
}

void CheckAudioSplits(Examination& examination) {
    constexpr std::array kRatesHz = {48000.0F, 44100.0F, 8000.0F,  11025.0F, 22050.0F,
                                     32000.0F, 47952.0F, 96000.0F, 44100.25F};
    constexpr int kPieces = 40;
    for (const TestClip& clip : WithSound(NewClips(examination, kRatesHz))) {
        const auto second = static_cast<std::uint32_t>(clip.rateHz);
        const auto position = static_cast<std::int64_t>(examination.Below(10 * std::uint64_t{second} + 1));
        const WholeSound whole(examination.Plugin(), clip, {.position = position, .count = second});
        std::uint32_t first = 0;
        for (const std::uint32_t cut : DrawCuts(examination.Numbers(), second, 1, kPieces)) {
            whole.RequirePiece(first, cut);
            first = cut;
        }
    }
}

}  // namespace

std::span<const Promise> AudioPromises() {
    static constexpr std::array kRows = {
        Promise{"audio-buffers",
                "Audio fills a channel whole, with finite samples, or leaves it alone, and writes nothing else.",
                CheckAudioBuffers},
        Promise{"audio-records", "Audio requests leave their record and the settings alone, wherever these lie.",
                CheckAudioRecords},
        Promise{"audio-positions", "Audio is served before a clip's beginning, after its end and far from both.",
                CheckAudioPositions},
        Promise{"audio-splits", "Audio that is read in pieces joins to what it is when read at once.",
                CheckAudioSplits},
    };
    return kRows;
}

}  // namespace lineup::validation
