#include <lineup/Exporter.h>
#include <lineup/ToneChoice.h>
#include "Host/Lineup/Export/Formats/SoundNames.h"
#include "Host/Lineup/Export/Plan/CheckExport.h"
#include "Host/Lineup/Export/Plan/ExportPlan.h"
#include "Host/Lineup/Export/Plan/PlanOrigin.h"
#include "Host/Lineup/Values/FrameTimes.h"

namespace lineup {

namespace {

PicturePlan PlanPicture(const ExportSettings& settings, const VideoEncoding& encoding) {
    CheckPictureSize(encoding.codec, settings.width, settings.height);
    CheckScan(encoding.codec, settings);
    PicturePlan picture;
    picture.encoding = &encoding;
    picture.width = settings.width;
    picture.height = settings.height;
    picture.card = settings.card;
    picture.shape = ShapeOf(settings.width, settings.height, settings.aspect);
    picture.scan = settings.scan;
    picture.frameRate = settings.frameRate;
    picture.timecode = settings.timecode;
    picture.encodeEveryFrame = settings.encodeEveryFrame;
    return picture;
}

std::vector<TrackPlan> PlanTracks(const Container& container, const AudioEncoding& encoding,
                                  const ChannelLayout& layout, bool monoTracks) {
    if (!monoTracks) {
        const bool tagged = container.takesSurroundTags && layout.channels.size() > 2;
        return {{.channels = {layout.fileOrder.begin(), layout.fileOrder.end()},
                 .layout = LayoutOfAll(encoding, layout.channels.size()),
                 .label = LabelOfAll(container, encoding, layout.channels.size()),
                 .tag = tagged ? encoding.surroundTag : 0,
                 .title = {}}};
    }
    std::vector<TrackPlan> tracks;
    for (const int channel : layout.fileOrder) {
        const std::string_view name = layout.channels[static_cast<std::size_t>(channel)];
        tracks.push_back({.channels = {channel},
                          .layout = LayoutOfOne(),
                          .label = LabelOfOne(container, name),
                          .title = std::string(name)});
    }
    return tracks;
}

SoundPlan PlanSound(const Clip& clip, const ExportSettings& settings, const Container& container,
                    const AudioEncoding& encoding) {
    const bool monoTracks = settings.monoTracks || container.format.onlyMonoTracks;
    SoundPlan sound;
    sound.encoding = &encoding;
    sound.sampleRateHz = CheckSampleRate(container.format, encoding.codec, clip.SampleRate());
    if (clip.Settings()) {
        CheckTone(*clip.Settings());
    }
    const ChannelLayout& layout = CheckChannels(clip);
    CheckLayout(container, encoding, layout, monoTracks);
    CheckDither(settings.dither, encoding);
    sound.dither = settings.dither;
    sound.startSample = settings.startSample;
    sound.samples = settings.samples + settings.blackSamples;
    sound.silentSamples = settings.blackSamples;
    sound.timeReference = settings.timecode ? settings.timecode->Samples(sound.sampleRateHz) : 0;
    sound.tracks = PlanTracks(container, encoding, layout, monoTracks);
    return sound;
}

// Picture and sound end together.
void PlanMovieLength(const ExportSettings& settings, PicturePlan& picture, SoundPlan& sound) {
    CheckFrameRate(picture.encoding->codec, settings.frameRate, settings.scan);
    CheckPixelRate(picture.encoding->codec, settings);
    picture.frames = settings.frames + settings.blackFrames;
    picture.blackFrames = settings.blackFrames;
    const auto samplesAt = [&](std::int64_t frame) {
        return frame > 0 ? SamplesAtFrame(frame, settings.frameRate, sound.sampleRateHz) : 0;
    };
    sound.samples = samplesAt(picture.frames);
    sound.silentSamples = sound.samples - samplesAt(settings.frames);
}

}  // namespace

inline namespace parts {

ExportPlan PlanExport(const Clip& clip, const ExportSettings& settings) {
    const Container& container = CheckContainer(settings);
    const VideoEncoding* const video = CheckVideoCodec(settings, container.format);
    const AudioEncoding* const audio = CheckAudioCodec(settings, container.format);
    CheckMonoTracks(settings, container.format);
    CheckTimecode(settings, container.format);
    CheckBlack(settings, container);

    ExportPlan plan;
    plan.target = settings.target;
    plan.pipe = settings.pipe;
    plan.overwrite = settings.overwrite;
    plan.disk = settings.disk;
    plan.reproducible = settings.reproducible;
    plan.origin = PlanOrigin(clip, settings);
    plan.container = &container;
    if (video != nullptr) {
        plan.picture = PlanPicture(settings, *video);
    }
    if (audio != nullptr) {
        plan.sound = PlanSound(clip, settings, container, *audio);
        if (plan.picture) {
            PlanMovieLength(settings, *plan.picture, *plan.sound);
        }
        CheckTimes(plan, clip.SampleRate());
    } else {
        plan.disk = Disk::Wait;
    }
    return plan;
}

ExportPlan PlanStill(const std::filesystem::path& target, int width, int height, Card card, bool overwrite,
                     PictureAspect aspect) {
    ExportSettings settings;
    settings.width = width;
    settings.height = height;
    settings.card = card;
    settings.aspect = aspect;
    ExportPlan plan;
    plan.target = target;
    plan.overwrite = overwrite;
    plan.container = FindContainer("still.png");
    plan.picture = PlanPicture(settings, *FindVideoEncoding(plan.container->format.videoCodecs.front()));
    return plan;
}

}  // namespace parts

void CheckExport(const Clip& clip, const ExportSettings& settings) {
    static_cast<void>(PlanExport(clip, settings));
}

}  // namespace lineup
