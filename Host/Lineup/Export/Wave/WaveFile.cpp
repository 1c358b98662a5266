#include "Host/Lineup/Export/Wave/WaveFile.h"

#include <lineup/AudioReader.h>
#include "Host/Lineup/Export/Progress.h"
#include "Host/Lineup/Export/Samples/Dither.h"
#include "Host/Lineup/Export/Samples/SamplePacking.h"
#include "Host/Lineup/Export/Wave/WaveHeader.h"
#include "Host/Lineup/Files/FileQueue.h"

#include <algorithm>
#include <span>
#include <vector>

namespace lineup {

namespace {

// How often progress is reported: often enough to stop at once, seldom enough to cost nothing.
constexpr std::int64_t kSamplesPerReport = 48000;

// So many of all channels stay in the processor's inner caches between their making and their packing.
constexpr std::int64_t kSamplesAtOnce = 2048;

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

void WriteHeader(FileQueue& queue, const WaveFormat& format) {
    const std::vector<std::uint8_t> header = WaveHeader(format);
    std::ranges::copy(header, queue.Room());
    queue.Add(header.size());
}

void WriteSamples(FileQueue& queue, const Clip& clip, const ExportPlan& plan, const ProgressFunction& progress) {
    const SoundPlan& planned = *plan.sound;
    const TrackPlan& track = planned.tracks.front();
    const SampleFormat samples = planned.encoding->samples;
    const std::size_t frameBytes = track.channels.size() * PackedBytes(samples);
    const auto most = static_cast<std::int64_t>(FileQueue::kRoomBytes / frameBytes);
    SoundInFileOrder sound(clip, track, most, planned.dither);
    const std::int64_t sounding = planned.samples - planned.silentSamples;
    for (std::int64_t done = 0, reported = 0; done < planned.samples;) {
        const std::int64_t position = planned.startSample + done;
        const std::int64_t end = done < sounding ? sounding : planned.samples;
        const std::int64_t count = std::min({sound.StretchEnd(position) - position, end - done, most});
        PackFrames(done < sounding ? sound.Read(position, count) : sound.Silence(count),
                   static_cast<std::size_t>(count), samples, queue.Room());
        queue.Add(static_cast<std::size_t>(count) * frameBytes);
        done += count;
        if (done - reported >= kSamplesPerReport || done == planned.samples) {
            reported = done;
            ReportProgress(progress, done, planned.samples, plan);
        }
    }
    if (planned.samples % 2 != 0 && frameBytes % 2 != 0) {
        *queue.Room() = 0;
        queue.Add(1);
    }
}

}  // namespace

void WriteWaveFile(const Clip& clip, const ExportPlan& plan, TargetFile& file, const ProgressFunction& progress) {
    file.RequireRoom(UncompressedBytes(*plan.sound));
    FileQueue queue(file);
    WriteHeader(queue, FormatOf(plan));
    ReportProgress(progress, 0, plan.sound->samples, plan);
    WriteSamples(queue, clip, plan, progress);
    queue.Finish();
}

}  // namespace lineup
