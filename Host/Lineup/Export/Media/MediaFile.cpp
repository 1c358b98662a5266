#include "Host/Lineup/Export/Media/MediaFile.h"

#include "Host/Lineup/Export/Media/ColourTags.h"
#include "Host/Lineup/Export/Media/Muxer.h"
#include "Host/Lineup/Export/Media/SoundTracks.h"
#include "Host/Lineup/Export/Media/VideoEncoder.h"
#include "Host/Lineup/Export/Progress.h"
#include "Host/Lineup/Files/TargetFile.h"
#include "Host/Lineup/Values/FrameTimes.h"
#include "Host/Lineup/Values/SampleAspect.h"

#include <fmt/format.h>

#include <limits>
#include <numeric>
#include <string>

namespace lineup {

namespace {

VideoReport ReportVideo(const ExportSettings& settings, const VideoCodec& codec) {
    const ColourTags tags = TagsFor(codec, settings.height);
    VideoReport report;
    report.codec = codec.name;
    report.pixelFormat = codec.pixelFormat;
    report.width = settings.width;
    report.height = settings.height;
    report.sampleAspect = SampleAspect(settings.width, settings.height);
    report.frameRate = settings.frameRate;
    report.colour = codec.colour == ColourKind::Rgb ? "rgb" : av_color_space_name(tags.matrix);
    return report;
}

/// Edit lists are in the whole file's unit of time: one that both frames and samples are multiples of, or
/// else frames alone. The muxer counts the time code's track in it too, in 32 bits.
void SetTimescale(AvOptions& options, const ExportSettings& settings, const ExportPlan& plan) {
    if (plan.format->timescaleOption.empty()) {
        return;
    }
    const std::int64_t firstSecond = settings.timecode ? settings.timecode->Samples(1) + 1 : 1;
    const std::int64_t largest = std::numeric_limits<std::int32_t>::max() / firstSecond;
    const std::int64_t frames = settings.frameRate.num;
    const std::int64_t both = std::lcm(frames, std::int64_t{plan.sampleRateHz});
    if (both <= largest) {
        options.Set(plan.format->timescaleOption, fmt::format("{}", both));
    } else if (frames <= largest) {
        options.Set(plan.format->timescaleOption, fmt::format("{}", frames));
    }
}

/// Writes picture and sound side by side, a frame's worth at a time.
void WriteStreams(VideoEncoder& video, SoundTracks& sound, const ExportSettings& settings, const ExportPlan& plan,
                  const ProgressFunction& progress) {
    for (std::int64_t frame = 0; frame < plan.frames; ++frame) {
        video.WriteFrame(frame);
        sound.WriteUpTo(SamplesAtFrame(frame + 1, settings.frameRate, plan.sampleRateHz));
        ReportProgress(progress, frame + 1, plan.frames, settings);
    }
    video.Finish();
    sound.Finish();
}

}  // namespace

void WriteMediaFile(const Clip& clip, const ExportSettings& settings, const ExportPlan& plan,
                    const ProgressFunction& progress, ExportReport& report) {
    TargetFile file(settings.target, settings.overwrite);
    Muxer muxer(*plan.format, file);
    VideoEncoder video(clip, *plan.video, settings, muxer);
    SoundTracks sound(clip, plan, settings.startSample, muxer);
    AvOptions options;
    SetTimescale(options, settings, plan);
    muxer.Begin(options);
    ReportProgress(progress, 0, plan.frames, settings);
    WriteStreams(video, sound, settings, plan, progress);
    muxer.Finish();
    file.Commit(settings.disk);
    report.video = ReportVideo(settings, *plan.video);
    report.audio = sound.Report();
}

}  // namespace lineup
