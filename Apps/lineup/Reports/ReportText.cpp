#include "Apps/lineup/Reports/ReportText.h"

#include <lineup/FormatTable.h>

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdlib>
#include <string_view>

namespace cli {

namespace {

std::string RationalText(lineup::Rational value) {
    return value.den == 1 ? fmt::format("{}", value.num) : fmt::format("{}/{}", value.num, value.den);
}

std::string_view ScanText(lineup::Scan scan) {
    return std::ranges::find(lineup::kScanNames, scan, &lineup::ScanName::scan)->name;
}

double Seconds(const lineup::ExportReport& report) {
    if (report.video) {
        return static_cast<double>(report.frames) * report.video->frameRate.den / report.video->frameRate.num;
    }
    return report.audio.empty() ? 0 : static_cast<double>(report.samples) / report.audio.front().sampleRateHz;
}

std::string VideoText(const lineup::ExportReport& report) {
    const lineup::VideoReport& video = *report.video;
    if (video.frameRate.num == 0) {
        return fmt::format("  picture  {}, {}x{}, {}\n", video.codec, video.width, video.height, video.colour);
    }
    const std::string scan = video.scan == lineup::Scan::Progressive ? "" : fmt::format("{}, ", ScanText(video.scan));
    return fmt::format("  picture  {}, {}x{}, {}{} fps, {}, {} frames\n", video.codec, video.width, video.height, scan,
                       RationalText(video.frameRate), video.colour, report.frames);
}

std::string AudioText(const lineup::AudioReport& audio, std::int64_t samples) {
    const std::string title = audio.title.empty() ? "" : fmt::format(" ({})", audio.title);
    return fmt::format("  sound    {}, {}{}, {} Hz, {} samples\n", audio.codec, audio.layout, title, audio.sampleRateHz,
                       samples);
}

nlohmann::ordered_json VideoJson(const lineup::ExportReport& report) {
    const lineup::VideoReport& video = *report.video;
    return {{"codec", video.codec},
            {"pixelFormat", video.pixelFormat},
            {"width", video.width},
            {"height", video.height},
            {"sampleAspect", RationalText(video.sampleAspect)},
            {"scan", ScanText(video.scan)},
            {"frameRate", RationalText(video.frameRate)},
            {"colour", video.colour},
            {"frames", report.frames}};
}

nlohmann::ordered_json AudioJson(const lineup::ExportReport& report) {
    auto tracks = nlohmann::ordered_json::array();
    for (const lineup::AudioReport& audio : report.audio) {
        tracks.push_back({{"codec", audio.codec},
                          {"sampleFormat", audio.sampleFormat},
                          {"sampleRateHz", audio.sampleRateHz},
                          {"channels", audio.channels},
                          {"layout", audio.layout},
                          {"title", audio.title},
                          {"samples", report.samples}});
    }
    return tracks;
}

// A file's name may be bytes that are no UTF-8: those are replaced.
std::string JsonText(const nlohmann::ordered_json& json) {
    return json.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

}  // namespace

std::string ReportText(const lineup::ExportReport& report, std::optional<std::int64_t> cycleSamples) {
    std::string text = fmt::format("wrote {}: {}, {:.3f} s, {} bytes\n", report.target.string(), report.container,
                                   Seconds(report), report.bytes);
    if (report.video) {
        text += VideoText(report);
    }
    for (const lineup::AudioReport& audio : report.audio) {
        text += AudioText(audio, report.samples);
    }
    if (report.blackSamples > 0) {
        text += fmt::format("  black    the last {}\n",
                            report.video ? fmt::format("{} frames, in silence", report.blackFrames)
                                         : fmt::format("{} samples are silence", report.blackSamples));
    }
    if (cycleSamples && *cycleSamples != report.samples - report.blackSamples) {
        const std::int64_t beyond = report.samples - report.blackSamples - *cycleSamples;
        text += fmt::format("  cycles   {} samples; the file is {} {}: it ends with a whole frame\n", *cycleSamples,
                            std::abs(beyond), beyond > 0 ? "longer" : "shorter");
    }
    return text;
}

std::string ReportJson(const lineup::ExportReport& report, std::optional<std::int64_t> cycleSamples) {
    nlohmann::ordered_json json = {{"file", report.target.string()},
                                   {"container", report.container},
                                   {"seconds", Seconds(report)},
                                   {"bytes", report.bytes}};
    if (report.video) {
        json["video"] = VideoJson(report);
    }
    json["audio"] = AudioJson(report);
    if (report.blackSamples > 0) {
        json["black"] = {{"frames", report.blackFrames}, {"samples", report.blackSamples}};
    }
    if (cycleSamples) {
        json["cycles"] = {{"samples", *cycleSamples},
                          {"samplesBeyond", report.samples - report.blackSamples - *cycleSamples}};
    }
    return JsonText(json);
}

std::string FormatHelp() {
    std::string text = "Kinds of files, and the codecs each can hold (the first is used unless another is named):\n";
    for (const lineup::FileFormat& format : lineup::FileFormats()) {
        text += fmt::format("  .{:<5}{}\n", format.extension, format.description);
        if (!format.videoCodecs.empty()) {
            text += fmt::format("        picture: {}\n", fmt::join(format.videoCodecs, ", "));
        }
        if (!format.audioCodecs.empty()) {
            text += fmt::format("        sound:   {}\n", fmt::join(format.audioCodecs, ", "));
        }
    }
    return text;
}

}  // namespace cli
