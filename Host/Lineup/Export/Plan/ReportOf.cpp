#include "Host/Lineup/Export/Formats/ColourMatrix.h"
#include "Host/Lineup/Export/Formats/SoundNames.h"
#include "Host/Lineup/Export/Plan/ExportPlan.h"
#include "Host/Lineup/Export/Samples/SamplePacking.h"

namespace lineup {
inline namespace parts {

namespace {

VideoReport ReportOf(const PicturePlan& picture) {
    VideoReport report;
    report.codec = picture.encoding->codec.name;
    report.pixelFormat = picture.encoding->pixelFormat;
    report.width = picture.width;
    report.height = picture.height;
    report.sampleAspect = picture.shape.sampleAspect;
    report.scan = picture.scan;
    report.frameRate = picture.frameRate;
    report.colour = MatrixName(MatrixFor(picture.encoding->colour, picture.height));
    return report;
}

AudioReport ReportOf(const SoundPlan& sound, const TrackPlan& track) {
    AudioReport report;
    report.codec = sound.encoding->codec.name;
    report.sampleFormat = SampleFormatName(sound.encoding->samples);
    report.sampleRateHz = sound.sampleRateHz;
    report.channels = static_cast<int>(track.channels.size());
    report.layout = track.label;
    report.title = track.title;
    return report;
}

}  // namespace

std::int64_t UncompressedBytes(const SoundPlan& sound) {
    if (!sound.encoding->encoder.starts_with("pcm_")) {
        return 0;
    }
    std::size_t channels = 0;
    for (const TrackPlan& track : sound.tracks) {
        channels += track.channels.size();
    }
    return sound.samples * static_cast<std::int64_t>(channels * PackedBytes(sound.encoding->samples));
}

ExportReport ReportOf(const ExportPlan& plan, std::int64_t bytes) {
    ExportReport report;
    report.target = plan.target;
    report.container = plan.container->format.extension;
    if (plan.picture) {
        report.video = ReportOf(*plan.picture);
        report.frames = plan.picture->frames;
        report.blackFrames = plan.picture->blackFrames;
    }
    if (plan.sound) {
        for (const TrackPlan& track : plan.sound->tracks) {
            report.audio.push_back(ReportOf(*plan.sound, track));
        }
        report.samples = plan.sound->samples;
        report.blackSamples = plan.sound->silentSamples;
    }
    report.bytes = static_cast<std::uintmax_t>(bytes);
    return report;
}

}  // namespace parts
}  // namespace lineup
