#include "Host/Lineup/Export/Media/MediaFile.h"

#include "Host/Lineup/Export/Media/Muxer.h"
#include "Host/Lineup/Export/Media/SoundTracks.h"
#include "Host/Lineup/Export/Media/VideoEncoder.h"
#include "Host/Lineup/Export/Progress.h"
#include "Host/Lineup/Values/FrameTimes.h"

#include <fmt/format.h>

#include <limits>
#include <numeric>
#include <string_view>

namespace lineup {

namespace {

/// Edit lists are in the whole file's unit of time: one that both frames and samples are multiples of, or
/// else frames alone. The muxer counts the time code's track in it too, in 32 bits.
void SetTimescale(AvOptions& options, const ExportPlan& plan) {
    const std::string_view option = plan.container->timescaleOption;
    if (option.empty()) {
        return;
    }
    const PicturePlan& picture = *plan.picture;
    const std::int64_t firstSecond = picture.timecode ? picture.timecode->Samples(1) + 1 : 1;
    const std::int64_t largest = std::numeric_limits<std::int32_t>::max() / firstSecond;
    const std::int64_t frames = picture.frameRate.num;
    const std::int64_t both = std::lcm(frames, std::int64_t{plan.sound->sampleRateHz});
    if (both <= largest) {
        options.Set(option, fmt::format("{}", both));
    } else if (frames <= largest) {
        options.Set(option, fmt::format("{}", frames));
    }
}

/// Writes picture and sound side by side, a frame's worth at a time.
void WriteStreams(VideoEncoder& video, SoundTracks& sound, const ExportPlan& plan, const ProgressFunction& progress) {
    const PicturePlan& picture = *plan.picture;
    for (std::int64_t frame = 0; frame < picture.frames; ++frame) {
        video.WriteFrame(frame);
        sound.WriteUpTo(SamplesAtFrame(frame + 1, picture.frameRate, plan.sound->sampleRateHz));
        ReportProgress(progress, frame + 1, picture.frames, plan);
    }
    video.Finish();
    sound.Finish();
}

}  // namespace

void WriteMovieFile(const Clip& clip, const ExportPlan& plan, TargetFile& file, const ProgressFunction& progress) {
    Muxer muxer(*plan.container, file, plan.reproducible);
    VideoEncoder video(clip, *plan.picture, muxer);
    SoundTracks sound(clip, *plan.sound, muxer);
    file.RequireRoom(video.FrameBytes() * (plan.picture->frames - plan.picture->blackFrames) +
                     UncompressedBytes(*plan.sound));
    AvOptions options;
    SetTimescale(options, plan);
    muxer.Begin(options);
    ReportProgress(progress, 0, plan.picture->frames, plan);
    WriteStreams(video, sound, plan, progress);
    muxer.Finish();
}

}  // namespace lineup
