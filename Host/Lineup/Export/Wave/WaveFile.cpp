#include "Host/Lineup/Export/Wave/WaveFile.h"

#include <lineup/AudioReader.h>
#include "Host/Lineup/Export/Formats/SoundNames.h"
#include "Host/Lineup/Export/Progress.h"
#include "Host/Lineup/Export/Samples/SamplePacking.h"
#include "Host/Lineup/Export/Wave/WaveHeader.h"
#include "Host/Lineup/Files/FileQueue.h"
#include "Host/Lineup/Files/TargetFile.h"

#include <algorithm>
#include <span>
#include <utility>
#include <vector>

namespace lineup {

namespace {

// How often progress is reported: often enough to stop at once, seldom enough to cost nothing.
constexpr std::int64_t kSamplesPerReport = 48000;

WaveFormat FormatOf(const ExportSettings& settings, const ExportPlan& plan) {
    WaveFormat format;
    format.samples = plan.audio->samples;
    format.channels = static_cast<int>(plan.channels->channels.size());
    format.sampleRateHz = plan.sampleRateHz;
    format.frames = plan.samples;
    format.timeReference = settings.timecode ? settings.timecode->Samples(plan.sampleRateHz) : 0;
    return format;
}

/// The clip's sound, stretch by stretch, in the order of a file's channels.
class SoundInFileOrder {
public:
    SoundInFileOrder(const Clip& clip, const ChannelLayout& layout, std::int64_t most)
        : mReader(clip), mMemory(layout.channels.size() * static_cast<std::size_t>(most)) {
        for (std::size_t c = 0; c < layout.channels.size(); ++c) {
            mChannels.push_back(mMemory.data() + c * static_cast<std::size_t>(most));
        }
        for (const int channel : layout.fileOrder) {
            mInFileOrder.push_back(mChannels.at(static_cast<std::size_t>(channel)));
        }
    }

    std::span<const float* const> Read(std::int64_t position, std::int64_t count) {
        mReader.Read(position, count, mChannels);
        return mInFileOrder;
    }

    /// The end of the stretch that is best read in one piece.
    [[nodiscard]] std::int64_t BlockEnd(std::int64_t position) const { return mReader.BlockEnd(position); }

private:
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

void WriteSamples(FileQueue& queue, const Clip& clip, const ExportSettings& settings, const ExportPlan& plan,
                  const ProgressFunction& progress) {
    const std::size_t frameBytes = plan.channels->channels.size() * PackedBytes(plan.audio->samples);
    const auto most = static_cast<std::int64_t>(FileQueue::kRoomBytes / frameBytes);
    SoundInFileOrder sound(clip, *plan.channels, most);
    for (std::int64_t done = 0, reported = 0; done < plan.samples;) {
        const std::int64_t position = settings.startSample + done;
        const std::int64_t count = std::min({sound.BlockEnd(position) - position, plan.samples - done, most});
        PackFrames(sound.Read(position, count), static_cast<std::size_t>(count), plan.audio->samples, queue.Room());
        queue.Add(static_cast<std::size_t>(count) * frameBytes);
        done += count;
        if (done - reported >= kSamplesPerReport || done == plan.samples) {
            reported = done;
            ReportProgress(progress, done, plan.samples, settings);
        }
    }
    if (plan.samples % 2 != 0 && frameBytes % 2 != 0) {
        *queue.Room() = 0;
        queue.Add(1);
    }
}

}  // namespace

void WriteWaveFile(const Clip& clip, const ExportSettings& settings, const ExportPlan& plan,
                   const ProgressFunction& progress, ExportReport& report) {
    TargetFile file(settings.target, settings.overwrite);
    {
        FileQueue queue(file);
        WriteHeader(queue, FormatOf(settings, plan));
        ReportProgress(progress, 0, plan.samples, settings);
        WriteSamples(queue, clip, settings, plan, progress);
        queue.Finish();
    }
    file.Commit(settings.disk);

    AudioReport track;
    track.codec = plan.audio->name;
    track.sampleFormat = SampleFormatName(plan.audio->samples);
    track.sampleRateHz = plan.sampleRateHz;
    track.channels = static_cast<int>(plan.channels->channels.size());
    track.layout = LayoutOfAll(*plan.audio, plan.channels->channels.size());
    report.audio.push_back(std::move(track));
}

}  // namespace lineup
