#include "Host/Lineup/Export/Wave/WaveFile.h"

#include <lineup/AudioReader.h>
#include "Host/Lineup/Export/Progress.h"
#include "Host/Lineup/Export/Samples/Dither.h"
#include "Host/Lineup/Export/Samples/SamplePacking.h"
#include "Host/Lineup/Export/Wave/WaveHeader.h"
#include "Host/Lineup/Files/WriteInTurns.h"

#include <algorithm>
#include <memory>
#include <span>
#include <vector>

namespace lineup {

namespace {

// So many of all channels stay in the processor's inner caches between their making and their packing.
constexpr std::int64_t kSamplesAtOnce = 2048;

// With the rest of the block of clip time that the last of them lies in.
constexpr std::int64_t kMostAtOnce = 2 * kSamplesAtOnce;

WaveFormat FormatOf(const ExportPlan& whole) {
    const SoundPlan& plan = *whole.sound;
    WaveFormat format;
    format.samples = plan.encoding->samples;
    format.channels = static_cast<int>(plan.tracks.front().channels.size());
    format.sampleRateHz = plan.sampleRateHz;
    format.frames = plan.samples;
    format.timeReference = plan.timeReference;
    format.description = whole.origin.description;
    format.date = whole.origin.date;
    format.time = whole.origin.time;
    return format;
}

/// The clip's sound, stretch by stretch, in the order of a file's channels.
class SoundInFileOrder {
public:
    SoundInFileOrder(const Clip& clip, const TrackPlan& track, std::int64_t most, Dither dither)
        : mDither(dither), mReader(clip), mMemory(track.channels.size() * static_cast<std::size_t>(most)) {
        for (std::size_t c = 0; c < track.channels.size(); ++c) {
            mChannels.push_back(mMemory.data() + c * static_cast<std::size_t>(most));
        }
        for (const int channel : track.channels) {
            mInFileOrder.push_back(mChannels.at(static_cast<std::size_t>(channel)));
        }
    }

    std::span<const float* const> Silence(std::int64_t count) {
        for (float* const channel : mChannels) {
            std::fill_n(channel, count, 0.0F);
        }
        return mInFileOrder;
    }

    std::span<const float* const> Read(std::int64_t position, std::int64_t count) {
        mReader.Read(position, count, mChannels);
        for (std::size_t c = 0; mDither == Dither::Triangular && c < mChannels.size(); ++c) {
            AddDither({mChannels[c], static_cast<std::size_t>(count)}, position, static_cast<int>(c));
        }
        return mInFileOrder;
    }

    /// The end of the stretch that is best read in one piece: whole blocks.
    [[nodiscard]] std::int64_t StretchEnd(std::int64_t position) const {
        return mReader.BlockEnd(position + kSamplesAtOnce - 1);
    }

private:
    Dither mDither;
    AudioReader mReader;
    std::vector<float> mMemory;
    std::vector<float*> mChannels;
    std::vector<const float*> mInFileOrder;
};

std::size_t FrameBytes(const SoundPlan& plan) {
    return plan.tracks.front().channels.size() * PackedBytes(plan.encoding->samples);
}

/// The bytes of a file, in any order. One a thread.
class WaveBytes {
public:
    WaveBytes(const Clip& clip, const ExportPlan& plan, const std::vector<std::uint8_t>& header)
        : mPlan(&*plan.sound),
          mHeader(&header),
          mFrameBytes(FrameBytes(*mPlan)),
          mSound(clip, mPlan->tracks.front(), kMostAtOnce, mPlan->dither),
          mPacked(static_cast<std::size_t>(kMostAtOnce) * mFrameBytes) {}

    /// Fills `piece`, the bytes from `at` on.
    void Make(std::int64_t at, std::span<std::uint8_t> piece) {
        const auto headerBytes = static_cast<std::int64_t>(mHeader->size());
        const std::int64_t soundBytes = mPlan->samples * static_cast<std::int64_t>(mFrameBytes);
        while (!piece.empty()) {
            std::size_t made = 1;
            if (at < headerBytes) {
                const auto rest = std::span(*mHeader).subspan(static_cast<std::size_t>(at));
                made = std::min(rest.size(), piece.size());
                std::copy_n(rest.begin(), made, piece.begin());
            } else if (at < headerBytes + soundBytes) {
                made = MakeFrames(at - headerBytes, piece);
            } else {
                piece.front() = 0;  // a chunk of an odd number of bytes is padded
            }
            at += static_cast<std::int64_t>(made);
            piece = piece.subspan(made);
        }
    }

private:
    /// Fills the front of `piece`, from byte `at` of the sound on, with one stretch of it. Gives the number of bytes.
    std::size_t MakeFrames(std::int64_t at, std::span<std::uint8_t> piece) {
        const auto frameBytes = static_cast<std::int64_t>(mFrameBytes);
        const auto skipped = static_cast<std::size_t>(at % frameBytes);
        const std::int64_t first = at / frameBytes;
        const std::int64_t sounding = mPlan->samples - mPlan->silentSamples;
        const std::int64_t end = first < sounding ? sounding : mPlan->samples;
        const std::int64_t position = mPlan->startSample + first;
        const auto asked = static_cast<std::int64_t>((piece.size() + skipped + mFrameBytes - 1) / mFrameBytes);
        const std::int64_t count = std::min({mSound.StretchEnd(position) - position, end - first, asked, kMostAtOnce});
        const auto frames = first < sounding ? mSound.Read(position, count) : mSound.Silence(count);
        const std::size_t bytes = static_cast<std::size_t>(count) * mFrameBytes;
        const bool isWhole = skipped == 0 && bytes <= piece.size();
        PackFrames(frames, static_cast<std::size_t>(count), mPlan->encoding->samples,
                   isWhole ? piece.data() : mPacked.data());
        const std::size_t made = std::min(bytes - skipped, piece.size());
        if (!isWhole) {
            std::copy_n(mPacked.begin() + static_cast<std::ptrdiff_t>(skipped), made, piece.begin());
        }
        return made;
    }

    const SoundPlan* mPlan;
    const std::vector<std::uint8_t>* mHeader;
    std::size_t mFrameBytes;
    SoundInFileOrder mSound;
    std::vector<std::uint8_t> mPacked;
};

}  // namespace

void WriteWaveFile(const Clip& clip, const ExportPlan& plan, TargetFile& file, const ProgressFunction& progress) {
    file.RequireRoom(UncompressedBytes(*plan.sound));
    const std::vector<std::uint8_t> header = WaveHeader(FormatOf(plan));
    const std::int64_t soundBytes = UncompressedBytes(*plan.sound);
    const auto frameBytes = static_cast<std::int64_t>(FrameBytes(*plan.sound));
    const auto headerBytes = static_cast<std::int64_t>(header.size());
    const auto report = [&](std::int64_t bytes) {
        ReportProgress(progress, std::clamp((bytes - headerBytes) / frameBytes, std::int64_t{0}, plan.sound->samples),
                       plan.sound->samples, plan);
    };
    report(0);
    WriteInTurns(
        file, headerBytes + soundBytes + soundBytes % 2,
        [&]() -> MakePiece {
            return [bytes = std::make_shared<WaveBytes>(clip, plan, header)](
                       std::int64_t at, std::span<std::uint8_t> piece) { bytes->Make(at, piece); };
        },
        report);
    report(file.Size());
}

}  // namespace lineup
