#include <lineup/Exporter.h>
#include <lineup/UsageError.h>
#include "Host/Interface/Media/TickTime.h"
#include "Host/Lineup/Export/Plan/ExportPlan.h"
#include "Host/Lineup/Values/FrameTimes.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace lineup {

namespace {

constexpr int kHighestFrameRate = 240;
constexpr int kLargestRateTerm = 1000000;  // keeps every product of times within 64 bits

void Require(bool holds, std::string_view option, const std::string& value, const std::string& remedy) {
    if (!holds) {
        throw UsageError(std::string(option), value, remedy);
    }
}

std::string Text(Rational rate) {
    return rate.den == 1 ? fmt::format("{}", rate.num) : fmt::format("{}/{}", rate.num, rate.den);
}

const FileFormat& CheckFormat(const ExportSettings& settings) {
    const FileFormat* const format = FindFileFormat(settings.target);
    if (format == nullptr) {
        std::vector<std::string_view> extensions;
        std::ranges::transform(FileFormats(), std::back_inserter(extensions), &FileFormat::extension);
        throw UsageError("output", settings.target.string(),
                         fmt::format("the name must end in .{}", fmt::join(extensions, ", .")));
    }
    return *format;
}

/// The codec that was named, or else the format's own; null when the format holds none of its kind.
template <typename Codec>
const Codec* CheckCodec(std::string_view option, const std::string& name, const FileFormat& format,
                        std::span<const std::string_view> allowed, const Codec* (*find)(std::string_view)) {
    if (name.empty()) {
        return allowed.empty() ? nullptr : find(allowed.front());
    }
    Require(!allowed.empty(), option, name,
            fmt::format("a .{} file has no {}", format.extension, option == "video-codec" ? "picture" : "sound"));
    Require(std::ranges::find(allowed, name) != allowed.end(), option, name,
            fmt::format("a .{} file can hold {}", format.extension, fmt::join(allowed, ", ")));
    return find(name);
}

void CheckFrameRate(const VideoCodec& codec, Rational rate) {
    const bool terms = rate.num > 0 && rate.den > 0 && rate.num <= kLargestRateTerm && rate.den <= kLargestRateTerm;
    Require(terms && rate.num >= rate.den && rate.num <= kHighestFrameRate * rate.den, "fps", Text(rate),
            fmt::format("must be from 1 to {}", kHighestFrameRate));
    if (!codec.frameRates.empty()) {
        std::vector<std::string> rates;
        std::ranges::transform(codec.frameRates, std::back_inserter(rates), Text);
        Require(std::ranges::any_of(codec.frameRates, [rate](Rational row) { return SameRatio(row, rate); }), "fps",
                Text(rate), fmt::format("{} takes {}", codec.name, fmt::join(rates, ", ")));
    }
}

int CheckSampleRate(const FileFormat& format, const AudioCodec& codec, float rateHz) {
    const std::string value = fmt::format("{}", rateHz);
    Require(std::trunc(rateHz) == rateHz && rateHz <= 768000, "sample-rate", value,
            "a file takes a whole number of Hz, 768000 at most");
    const int rate = static_cast<int>(rateHz);
    for (const auto& [rates, name] : {std::pair(format.sampleRatesHz, fmt::format("a .{} file", format.extension)),
                                      std::pair(codec.sampleRatesHz, std::string(codec.name))}) {
        Require(rates.empty() || std::ranges::find(rates, rate) != rates.end(), "sample-rate", value,
                fmt::format("{} takes {}", name, fmt::join(rates, ", ")));
    }
    return rate;
}

// Mono and stereo need no saying; of more channels a file must say which is which.
void CheckLayout(const ExportPlan& plan) {
    const bool plain = plan.monoTracks || plan.channels->channels.size() <= 2;
    Require(plain || plan.audio->carriesLayout || !plan.format->needsLayoutInCodec, "audio-codec",
            std::string(plan.audio->name),
            fmt::format("a .{} file cannot say which of its channels is which; choose flac, or mono tracks",
                        plan.format->extension));
}

// The greatest count of samples that the clip's ticks can still time.
std::int64_t LongestClipSamples(float rateHz) {
    return std::numeric_limits<std::int64_t>::max() /
           std::max<std::int64_t>(zelmediatypes::FrameRateFromHz(rateHz).Ticks(), 1);
}

void CheckTimes(const ExportSettings& settings, const ExportPlan& plan, float rateHz) {
    const std::int64_t longest = LongestClipSamples(rateHz);
    Require(settings.startSample > -longest && settings.startSample < longest, "start",
            fmt::format("{} samples", settings.startSample),
            fmt::format("must be within {} samples of the clip's start", longest));
    const std::int64_t room = longest - std::max<std::int64_t>(settings.startSample, 0);
    const bool fits = settings.duration <= room && plan.samples <= room;
    Require(settings.duration > 0 && fits, "duration",
            fmt::format("{} {}", settings.duration, plan.video != nullptr ? "frames" : "samples"),
            "must be 1 or more, and end before the clip's time does");
}

void CheckTimecode(const ExportSettings& settings, const FileFormat& format) {
    if (settings.timecode) {
        Require(format.holdsTimecode, "timecode", settings.timecode->Text(),
                fmt::format("a .{} file holds none", format.extension));
        Require(SameRatio(settings.timecode->FrameRate(), settings.frameRate), "timecode", settings.timecode->Text(),
                fmt::format("must count at the file's frame rate, {}", Text(settings.frameRate)));
    }
}

}  // namespace

void CheckPictureSize(const VideoCodec& codec, int width, int height) {
    const std::string value = fmt::format("{}x{}", width, height);
    Require(width % codec.sizeStep == 0 && height % codec.sizeStep == 0, "size", value,
            "must be even numbers of pixels");
    Require(width >= codec.minWidth && height >= codec.minHeight, "size", value,
            fmt::format("{} takes {}x{} at least", codec.name, codec.minWidth, codec.minHeight));
    Require(width <= codec.maxWidth && height <= codec.maxHeight, "size", value,
            fmt::format("{} takes {}x{} at most", codec.name, codec.maxWidth, codec.maxHeight));
}

ExportPlan PlanExport(const Clip& clip, const ExportSettings& settings) {
    ExportPlan plan;
    plan.format = &CheckFormat(settings);
    const FileFormat& format = *plan.format;
    plan.video = CheckCodec("video-codec", settings.videoCodec, format, format.videoCodecs, &FindVideoCodec);
    plan.audio = CheckCodec("audio-codec", settings.audioCodec, format, format.audioCodecs, &FindAudioCodec);
    Require(!settings.monoTracks || format.offersMonoTracks, "mono-tracks", "yes",
            fmt::format("a .{} file has one track for all channels", format.extension));
    plan.monoTracks = settings.monoTracks || format.onlyMonoTracks;
    CheckTimecode(settings, format);

    if (plan.video != nullptr) {
        CheckPictureSize(*plan.video, settings.width, settings.height);
        plan.frames = 1;
    }
    if (plan.audio != nullptr) {
        plan.sampleRateHz = CheckSampleRate(format, *plan.audio, clip.SampleRate());
        plan.channels = FindChannelLayout(clip.NumChannels());
        Require(plan.channels != nullptr, "channels", fmt::format("{}", clip.NumChannels()),
                "a file takes 1, 2 or 6 channels");
        CheckLayout(plan);
        if (plan.video != nullptr) {
            CheckFrameRate(*plan.video, settings.frameRate);
            plan.frames = settings.duration;
        }
        plan.samples = settings.duration;
        if (plan.video != nullptr && settings.duration > 0) {
            plan.samples = SamplesAtFrame(settings.duration, settings.frameRate, plan.sampleRateHz);
        }
        CheckTimes(settings, plan, clip.SampleRate());
    }
    return plan;
}

void CheckExport(const Clip& clip, const ExportSettings& settings) {
    static_cast<void>(PlanExport(clip, settings));
}

}  // namespace lineup
