#include "Host/Lineup/Export/Exporter.h"

#include "Host/Lineup/Export/ColourTags.h"
#include "Host/Lineup/Export/ExportPlan.h"
#include "Host/Lineup/Export/FrameTimes.h"
#include "Host/Lineup/Export/Muxer.h"
#include "Host/Lineup/Export/SoundTracks.h"
#include "Host/Lineup/Export/StillPicture.h"
#include "Host/Lineup/Export/TargetFile.h"
#include "Host/Lineup/Export/VideoEncoder.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>
#include <numeric>
#include <optional>
#include <string>

namespace lineup {

namespace {

// How often a file of sound alone reports its progress.
constexpr std::int64_t kSamplesPerReport = 48000;

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

/// The tags that belong to the file as a whole.
void TagFile(Muxer& muxer, const ExportSettings& settings, const ExportPlan& plan) {
    if (!plan.format->timeReferenceTag.empty()) {
        const std::int64_t samples = settings.timecode ? settings.timecode->Samples(plan.sampleRateHz) : 0;
        muxer.TagFile(plan.format->timeReferenceTag, fmt::format("{}", samples));
        muxer.TagFile("originator", "Bars and Tone");
    }
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

void Report(const ProgressFunction& progress, std::int64_t done, std::int64_t total, const ExportSettings& settings) {
    if (progress && !progress(done, total)) {
        throw Cancelled(fmt::format("cannot finish {}: cancelled", settings.target.string()));
    }
}

/// Writes picture and sound side by side, a frame's worth at a time.
void WritePictureAndSound(VideoEncoder& video, SoundTracks& sound, const ExportSettings& settings,
                          const ExportPlan& plan, const ProgressFunction& progress) {
    for (std::int64_t frame = 0; frame < plan.frames; ++frame) {
        video.WriteFrame(frame);
        sound.WriteUpTo(SamplesAtFrame(frame + 1, settings.frameRate, plan.sampleRateHz));
        Report(progress, frame + 1, plan.frames, settings);
    }
    video.Finish();
}

void WriteSound(SoundTracks& sound, const ExportSettings& settings, const ExportPlan& plan,
                const ProgressFunction& progress) {
    for (std::int64_t done = 0; done < plan.samples;) {
        done += std::min(kSamplesPerReport, plan.samples - done);
        sound.WriteUpTo(done);
        Report(progress, done, plan.samples, settings);
    }
}

ExportReport ExportStill(const Clip& clip, const ExportSettings& settings, const ProgressFunction& progress) {
    Report(progress, 0, 1, settings);
    WritePng(clip, settings.width, settings.height, settings.card, settings.target, settings.overwrite);
    return {};
}

ExportReport ExportStreams(const Clip& clip, const ExportSettings& settings, const ExportPlan& plan,
                           const ProgressFunction& progress) {
    TargetFile file(settings.target, settings.overwrite);
    Muxer muxer(*plan.format, file);
    std::optional<VideoEncoder> video;
    if (plan.video != nullptr) {
        video.emplace(clip, *plan.video, settings, muxer);
    }
    SoundTracks sound(clip, plan, settings.startSample, muxer);
    TagFile(muxer, settings, plan);
    AvOptions options;
    SetTimescale(options, settings, plan);
    muxer.Begin(options);

    Report(progress, 0, video ? plan.frames : plan.samples, settings);
    if (video) {
        WritePictureAndSound(*video, sound, settings, plan, progress);
    } else {
        WriteSound(sound, settings, plan, progress);
    }
    sound.Finish();
    muxer.Finish();
    file.Commit();

    ExportReport report;
    report.audio = sound.Report();
    return report;
}

}  // namespace

ExportReport Export(const Clip& clip, const ExportSettings& settings, const ProgressFunction& progress) {
    const ExportPlan plan = PlanExport(clip, settings);
    ExportReport report = plan.format->muxer.empty() ? ExportStill(clip, settings, progress)
                                                     : ExportStreams(clip, settings, plan, progress);
    report.target = settings.target;
    report.container = plan.format->extension;
    if (plan.video != nullptr) {
        report.video = ReportVideo(settings, *plan.video);
    }
    report.frames = plan.frames;
    report.samples = plan.samples;
    report.bytes = std::filesystem::file_size(settings.target);
    return report;
}

}  // namespace lineup
