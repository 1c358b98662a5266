#include "Host/Lineup/Export/Plan/CheckExport.h"

#include <lineup/Limits.h>
#include <lineup/UsageError.h>
#include "Host/Interface/Media/TickTime.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace lineup {
inline namespace parts {

namespace {

constexpr float kHighestFileRateHz = 768000;  // what files are known to be read at

void Require(bool holds, std::string_view option, const std::string& value, const std::string& remedy) {
    if (!holds) {
        throw UsageError(std::string(option), value, remedy);
    }
}

std::string Text(Rational rate) {
    return rate.den == 1 ? fmt::format("{}", rate.num) : fmt::format("{}/{}", rate.num, rate.den);
}

constexpr int kMostInterlacedFrames = 30;  // a second: no system has more than 60 fields

// The codecs of which `property` holds.
std::vector<std::string_view> NamesOf(bool VideoCodec::*property) {
    std::vector<std::string_view> names;
    for (const VideoCodec& codec : VideoCodecs()) {
        if (codec.*property) {
            names.push_back(codec.name);
        }
    }
    return names;
}

template <typename Encoding>
const Encoding* CheckCodec(std::string_view option, const std::string& name, const FileFormat& format,
                           std::span<const std::string_view> allowed, const Encoding* (*find)(std::string_view)) {
    if (name.empty()) {
        return allowed.empty() ? nullptr : find(allowed.front());
    }
    Require(!allowed.empty(), option, name,
            fmt::format("a .{} file has no {}", format.extension, option == "video-codec" ? "picture" : "sound"));
    Require(std::ranges::find(allowed, name) != allowed.end(), option, name,
            fmt::format("a .{} file can hold {}", format.extension, fmt::join(allowed, ", ")));
    return find(name);
}

// The greatest count of samples that the clip's ticks can still time.
std::int64_t LongestClipSamples(float rateHz) {
    return std::numeric_limits<std::int64_t>::max() /
           std::max<std::int64_t>(zelmediatypes::FrameRateFromHz(rateHz).Ticks(), 1);
}

}  // namespace

const Container& CheckContainer(const ExportSettings& settings) {
    const bool named = !settings.format.empty();
    const Container* const container =
        FindContainer(named ? std::filesystem::path("x." + settings.format) : settings.target);
    if (container == nullptr) {
        std::vector<std::string_view> extensions;
        std::ranges::transform(FileFormats(), std::back_inserter(extensions), &FileFormat::extension);
        throw named ? UsageError("format", settings.format, fmt::format("must be {}", fmt::join(extensions, ", ")))
                    : UsageError("output", settings.target.string(),
                                 fmt::format("the name must end in .{}", fmt::join(extensions, ", .")));
    }
    Require(!settings.pipe || container->format.streams, "format", std::string(container->format.extension),
            fmt::format("is not written from front to back, as a pipe needs it: choose {}",
                        fmt::join(StreamedFormats(), ", ")));
    return *container;
}

const VideoEncoding* CheckVideoCodec(const ExportSettings& settings, const FileFormat& format) {
    return CheckCodec("video-codec", settings.videoCodec, format, format.videoCodecs, &FindVideoEncoding);
}

const AudioEncoding* CheckAudioCodec(const ExportSettings& settings, const FileFormat& format) {
    return CheckCodec("audio-codec", settings.audioCodec, format, format.audioCodecs, &FindAudioEncoding);
}

void CheckMonoTracks(const ExportSettings& settings, const FileFormat& format) {
    Require(!settings.monoTracks || format.offersMonoTracks, "mono-tracks", "yes",
            fmt::format("a .{} file has one track for all channels", format.extension));
}

void CheckDither(Dither dither, const AudioEncoding& encoding) {
    Require(
        dither == Dither::None || encoding.samples == SampleFormat::S16, "dither", "tpdf",
        fmt::format("is for sound of 16 bits: {} keeps more; choose pcm-s16, or leave it out", encoding.codec.name));
}

void CheckBlack(const ExportSettings& settings, const Container& container) {
    const bool none = settings.blackFrames == 0 && settings.blackSamples == 0;
    Require(none || container.kind != FileKind::Still, "black", "yes",
            fmt::format("a .{} file holds one picture", container.format.extension));
    constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
    Require(settings.blackFrames >= 0 && settings.blackSamples >= 0 &&
                settings.frames <= kMost - settings.blackFrames && settings.samples <= kMost - settings.blackSamples,
            "black", fmt::format("{} frames", settings.blackFrames), "must be 0 or more, and end in this age");
}

void CheckFrameRate(const VideoCodec& codec, Rational rate, Scan scan) {
    const bool hasOwn = scan != Scan::Progressive && !codec.interlacedFrameRates.empty();
    const auto taken = hasOwn ? codec.interlacedFrameRates : codec.frameRates;
    Require(IsFrameRate(rate), "fps", Text(rate),
            fmt::format("must be from {} to {}", kLowestFrameRate, kHighestFrameRate));
    if (!taken.empty()) {
        std::vector<std::string> rates;
        std::ranges::transform(taken, std::back_inserter(rates), Text);
        Require(std::ranges::any_of(taken, [rate](Rational row) { return SameRatio(row, rate); }), "fps", Text(rate),
                fmt::format("{} takes {}", codec.name, fmt::join(rates, ", ")));
    }
}

int CheckSampleRate(const FileFormat& format, const AudioCodec& codec, float rateHz) {
    const std::string value = fmt::format("{}", rateHz);
    Require(std::trunc(rateHz) == rateHz && rateHz <= kHighestFileRateHz, "sample-rate", value,
            fmt::format("a file takes a whole number of Hz, {} at most", kHighestFileRateHz));
    const int rate = static_cast<int>(rateHz);
    for (const auto& [rates, name] : {std::pair(format.sampleRatesHz, fmt::format("a .{} file", format.extension)),
                                      std::pair(codec.sampleRatesHz, std::string(codec.name))}) {
        Require(rates.empty() || std::ranges::find(rates, rate) != rates.end(), "sample-rate", value,
                fmt::format("{} takes {}", name, fmt::join(rates, ", ")));
    }
    return rate;
}

const ChannelLayout& CheckChannels(const Clip& clip) {
    const ChannelLayout* const layout = FindChannelLayout(clip.NumChannels());
    Require(layout != nullptr, "channels", fmt::format("{}", clip.NumChannels()), "a file takes 1, 2 or 6 channels");
    return *layout;
}

// Mono and stereo need no saying.
void CheckLayout(const Container& container, const AudioEncoding& encoding, const ChannelLayout& layout,
                 bool monoTracks) {
    const bool plain = monoTracks || layout.channels.size() <= 2;
    Require(plain || encoding.carriesLayout || !container.needsLayoutInCodec, "audio-codec",
            std::string(encoding.codec.name),
            fmt::format("a .{} file cannot say which of its channels is which; choose flac, or mono tracks",
                        container.format.extension));
}

void CheckTimes(const ExportPlan& plan, float rateHz) {
    const SoundPlan& sound = *plan.sound;
    const std::int64_t longest = LongestClipSamples(rateHz);
    Require(sound.startSample > -longest && sound.startSample < longest, "start",
            fmt::format("{} samples", sound.startSample),
            fmt::format("must be within {} samples of the clip's start", longest));
    const std::int64_t room = longest - std::max<std::int64_t>(sound.startSample, 0);
    const std::int64_t length = plan.picture ? plan.picture->frames : sound.samples;
    Require(length > 0 && length <= room && sound.samples <= room, "duration",
            fmt::format("{} {}", length, plan.picture ? "frames" : "samples"),
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

void CheckPictureSize(const VideoCodec& codec, int width, int height) {
    const std::string value = fmt::format("{}x{}", width, height);
    Require(width % codec.sizeStep == 0 && height % codec.sizeStep == 0, "size", value,
            "must be even numbers of pixels");
    const bool isOne = codec.minWidth == codec.maxWidth && codec.minHeight == codec.maxHeight;
    Require(!isOne || (width == codec.minWidth && height == codec.minHeight), "size", value,
            fmt::format("{} takes {}x{}", codec.name, codec.minWidth, codec.minHeight));
    Require(width >= codec.minWidth && height >= codec.minHeight, "size", value,
            fmt::format("{} takes {}x{} at least", codec.name, codec.minWidth, codec.minHeight));
    Require(width <= codec.maxWidth && height <= codec.maxHeight, "size", value,
            fmt::format("{} takes {}x{} at most", codec.name, codec.maxWidth, codec.maxHeight));
}

void CheckScan(const VideoCodec& codec, const ExportSettings& settings) {
    if (settings.scan == Scan::Progressive) {
        return;
    }
    const std::string value(std::ranges::find(kScanNames, settings.scan, &ScanName::scan)->name);
    Require(codec.interlaced, "scan", value,
            fmt::format("{} has no fields; {} have", codec.name, fmt::join(NamesOf(&VideoCodec::interlaced), ", ")));
    Require(settings.height % codec.interlacedHeightStep == 0, "scan", value,
            fmt::format("the height must be a multiple of {} for two fields in {}", codec.interlacedHeightStep,
                        codec.name));
}

void CheckPixelRate(const VideoCodec& codec, const ExportSettings& settings) {
    Require(settings.scan == Scan::Progressive ||
                settings.frameRate.num <= std::int64_t{kMostInterlacedFrames} * settings.frameRate.den,
            "fps", Text(settings.frameRate),
            fmt::format("an interlaced frame is two fields, and {} frames a second are the most; 50 fields a second "
                        "are 25 frames",
                        kMostInterlacedFrames));
    const std::int64_t pixels = std::int64_t{settings.width} * settings.height;
    Require(codec.maxPixelsPerSecond == 0 ||
                pixels * settings.frameRate.num <= codec.maxPixelsPerSecond * settings.frameRate.den,
            "fps", Text(settings.frameRate),
            fmt::format("{} allows {} pixels a second: at {}x{} {} frames", codec.name, codec.maxPixelsPerSecond,
                        settings.width, settings.height, codec.maxPixelsPerSecond / pixels));
}

}  // namespace parts
}  // namespace lineup
