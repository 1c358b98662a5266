#include "Apps/lineup/Commands/SendCommand.h"

#include <lineup/Clip.h>
#include <lineup/Send.h>
#include <lineup/StreamTable.h>
#include "Apps/lineup/Options/CommonOptions.h"
#include "Apps/lineup/Options/PictureOptions.h"
#include "Apps/lineup/Options/TimeOptions.h"
#include "Apps/lineup/Options/Values.h"
#include "Apps/lineup/Terminal/Interrupt.h"
#include "Apps/lineup/Terminal/StatusLine.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <unistd.h>
#include <vector>

namespace cli {

namespace {

constexpr const char* kStream = "Stream";
constexpr const char* kToStandardOutput = "-";

struct SendOptions {
    CommonOptions common;
    PictureOptions picture;
    lineup::Scan scan = lineup::Scan::Progressive;
    std::vector<std::string> targets;
    std::string frameRate = "25";
    std::string start = "0";
    std::optional<std::string> length;
    std::string videoCodec;
    std::string audioCodec;
    std::string format;
    std::optional<double> packetMs;
    std::optional<double> copies;
    std::string session;
    std::optional<double> group;
    std::optional<std::string> bitRate;
    std::string clock = "steady";
    bool overwrite = false;
    bool quiet = false;
    bool json = false;
};

struct FormatName {
    std::string_view name;
    lineup::StreamFormat format;
};
constexpr std::array<FormatName, 3> kFormatNames = {{
    {"ts", lineup::StreamFormat::TransportStream},
    {"flv", lineup::StreamFormat::Flv},
    {"l24", lineup::StreamFormat::Linear24},
}};

lineup::StreamFormat ParseStreamFormat(const std::string& text, const std::string& target) {
    if (text.empty()) {
        return lineup::UsualFormat(target);
    }
    const auto* const found = std::ranges::find(kFormatNames, text, &FormatName::name);
    if (found == kFormatNames.end()) {
        throw lineup::UsageError("format", text, "must be ts, flv or l24");
    }
    return found->format;
}

struct ClockName {
    std::string_view name;
    lineup::SendTiming timing;
};
constexpr std::array<ClockName, 3> kClockNames = {{
    {"steady", lineup::SendTiming::Steady},
    {"wall", lineup::SendTiming::Wall},
    {"free", lineup::SendTiming::Free},
}};

lineup::SendTiming ParseClockName(const std::string& text) {
    const auto* const found = std::ranges::find(kClockNames, text, &ClockName::name);
    if (found == kClockNames.end()) {
        throw lineup::UsageError("clock", text, "must be steady, wall or free");
    }
    return found->timing;
}

// "8M", "2500k" or bits.
std::int64_t ParseBitRate(std::string text) {
    const std::string given = text;
    double factor = 1;
    if (text.ends_with('k') || text.ends_with('M')) {
        factor = text.back() == 'k' ? 1e3 : 1e6;
        text.pop_back();
    }
    constexpr const char* kExpected = "must be bits a second, such as 8M or 2500k";
    constexpr double kMost = 1e12;
    try {
        const double rate = ParseNumber("bitrate", text, kExpected) * factor;
        if (rate >= 1 && rate <= kMost) {
            return static_cast<std::int64_t>(rate);
        }
    } catch (const lineup::UsageError&) {  // NOLINT(bugprone-empty-catch): said below, with the whole text
    }
    throw lineup::UsageError("bitrate", given, kExpected);
}

int ParseWhole(const char* option, double number, const char* remedy) {
    constexpr double kMost = 1e6;
    if (number < 1 || number > kMost || number != static_cast<int>(number)) {
        throw lineup::UsageError(option, fmt::format("{}", number), remedy);
    }
    return static_cast<int>(number);
}

std::optional<std::int64_t> SamplesToSend(const SendOptions& options, const lineup::Clip& clip) {
    if (!options.length) {
        return std::nullopt;
    }
    return std::max<std::int64_t>(
        0, NearestIndex(ParseTime("for", *options.length), {static_cast<int>(clip.SampleRate()), 1}));
}

lineup::SendSettings MakeSendSettings(const SendOptions& options, const lineup::Clip& clip) {
    lineup::SendSettings settings;
    const Size size = options.picture.ParsedSize();
    settings.target = options.targets.front();
    settings.moreTargets.assign(options.targets.begin() + 1, options.targets.end());
    if (std::ranges::count(settings.moreTargets, kToStandardOutput) > 0) {
        throw lineup::UsageError("output", kToStandardOutput, "must be the first of several");
    }
    if (settings.target == kToStandardOutput) {
        if (isatty(STDOUT_FILENO) != 0) {
            throw lineup::UsageError("output", kToStandardOutput, "is a terminal here: send it into a pipe or a file");
        }
        settings.target = "standard output";
        settings.pipe = STDOUT_FILENO;
    }
    settings.overwrite = options.overwrite;
    settings.format = ParseStreamFormat(options.format, options.targets.front());
    if (options.packetMs) {
        constexpr double kMostMs = 1000;
        settings.packetUs = static_cast<int>(std::lround(std::clamp(*options.packetMs, 0.0, kMostMs) * 1000));
    }
    if (options.copies) {
        settings.copies = ParseWhole("copies", *options.copies, "must be a whole number");
    }
    settings.width = size.width;
    settings.height = size.height;
    settings.card = options.picture.card;
    settings.aspect = options.picture.aspect;
    settings.scan = options.scan;
    settings.frameRate = ParseFrameRate(options.frameRate);
    settings.videoCodec = options.videoCodec;
    settings.audioCodec = options.audioCodec;
    settings.groupFrames = options.group ? ParseWhole("gop", *options.group, "must be a whole number of frames") : 0;
    settings.bitsPerSecond = options.bitRate ? ParseBitRate(*options.bitRate) : 0;
    settings.timing = ParseClockName(options.clock);
    settings.startSample = NearestIndex(ParseTime("start", options.start), {static_cast<int>(clip.SampleRate()), 1});
    settings.samples = SamplesToSend(options, clip);
    return settings;
}

nlohmann::ordered_json StatusJson(const lineup::SendStatus& status) {
    return {{"seconds", status.seconds},
            {"clipSeconds", status.clipSeconds},
            {"bitsPerSecond", status.bitsPerSecond},
            {"bytes", status.bytes},
            {"datagrams", status.datagrams},
            {"late", status.lateDatagrams},
            {"worstLateMs", status.worstLateMs},
            {"lost", status.lostDatagrams},
            {"jumps", status.jumps},
            {"delayMs", status.delayMs}};
}

std::string StatusText(const lineup::SendStatus& status) {
    const auto seconds = static_cast<std::int64_t>(status.seconds);
    std::string text = fmt::format("{}:{:02}:{:02}  {:.3f} Mbit/s", seconds / 3600, seconds / 60 % 60, seconds % 60,
                                   static_cast<double>(status.bitsPerSecond) / 1e6);
    text += fmt::format("  {} late, the worst {:.1f} ms", status.lateDatagrams, status.worstLateMs);
    if (status.lostDatagrams > 0) {
        text += fmt::format("  {} lost", status.lostDatagrams);
    }
    return text;
}

/// What is said while a stream goes on, and at its end.
class SendTalk {
public:
    explicit SendTalk(const SendOptions& options, bool pipe)
        : mOut(pipe ? stderr : stdout), mJson(options.json), mQuiet(options.quiet), mLine(!mJson && !mQuiet) {}

    void Notice(const std::string& text) {
        mLine.Clear();
        if (mJson) {
            Print(nlohmann::ordered_json{{"notice", text}}.dump());
        } else {
            fmt::print(stderr, "lineup: {}\n", text);
        }
    }

    void Show(const lineup::SendStatus& status) {
        if (status.seconds < mNext) {
            return;
        }
        mNext = status.seconds + 1;
        if (mJson) {
            Print(StatusJson(status).dump());
        } else {
            mLine.Show(StatusText(status));
        }
    }

    void End(const lineup::SendStatus& status) {
        mLine.Clear();
        if (mJson) {
            auto json = StatusJson(status);
            json["ended"] = true;
            Print(json.dump());
        } else if (!mQuiet) {
            Print("sent " + StatusText(status));
        }
    }

private:
    void Print(const std::string& line) {
        fmt::print(mOut, "{}\n", line);
        std::fflush(mOut);  // a monitor reads along
    }

    FILE* mOut;
    bool mJson;
    bool mQuiet;
    StatusLine mLine;
    double mNext = 1;
};

void WriteSession(const std::string& target, const std::string& text) {
    if (target == kToStandardOutput) {
        fmt::print("{}", text);
        std::fflush(stdout);
        return;
    }
    std::ofstream file(target, std::ios::binary);
    file << text << std::flush;
    if (!file) {
        throw lineup::Error(fmt::format("cannot write the session description {}", target));
    }
}

void RunSend(const SendOptions& options) {
    const auto importer = options.common.LoadImporter();
    const lineup::Clip clip(importer, options.common.Settings(*importer));
    lineup::SendSettings settings = MakeSendSettings(options, clip);
    if (!options.session.empty()) {
        WriteSession(options.session, DescribeSession(clip, settings));
    }
    SendTalk talk(options, settings.pipe.has_value());
    settings.notice = [&talk](const std::string& text) { talk.Notice(text); };
    constexpr int kSecondsToEnd = 2;
    WatchForInterrupts(kSecondsToEnd);
    talk.End(Send(clip, settings, [&talk](const lineup::SendStatus& status) {
        talk.Show(status);
        return Interrupted() == 0;
    }));
}

void AddStreamOptions(CLI::App& command, SendOptions& options) {
    command
        .add_option("--format", options.format,
                    "ts: an MPEG-2 transport stream; flv: H.264 and AAC for rtmp; l24: sound alone, uncompressed,\n"
                    "over rtp [flv for rtmp and NAME.flv, else ts]")
        ->type_name("ts|flv|l24")
        ->group(kStream);
    AddNumber(command, "packet-time", options.packetMs, "Sound in a packet of l24: 1, or 0.125 [1]", "ms")
        ->group(kStream);
    AddNumber(command, "copies", options.copies,
              "The clip's channels so often side by side in l24: 8 of stereo are 16 [1]", "N")
        ->group(kStream);
    command.add_option("--sdp", options.session, "Write what receivers of rtp need to know beforehand; - prints it")
        ->type_name("FILE")
        ->group(kStream);
    command.add_option("--video-codec", options.videoCodec, "Picture codec, or none; see below [h264]")
        ->type_name("NAME")
        ->group(kStream);
    command.add_option("--audio-codec", options.audioCodec, "Sound codec, or none; see below [aac]")
        ->type_name("NAME")
        ->group(kStream);
    AddNumber(command, "gop", options.group,
              "From one picture that stands alone to the next; 1: all do [half a second]", "FRAMES")
        ->group(kStream);
    command
        .add_option("--bitrate", options.bitRate,
                    "Constant rate of the whole ts, stuffing included: 8M, 2500k [as pictures need within 0.4 s]")
        ->type_name("RATE")
        ->group(kStream);
    command.add_flag("-y,--overwrite", options.overwrite, "Replace the file if it is there already")->group(kStream);
}

void AddSendTimeOptions(CLI::App& command, SendOptions& options) {
    command.add_option("--fps", options.frameRate, "Frames a second: 24000/1001, 25, 30000/1001, 50, ...")
        ->type_name("RATE")
        ->capture_default_str()
        ->group(kTimeGroup);
    command.add_option("--start", options.start, "Clip time at which to begin")
        ->type_name("TIME")
        ->capture_default_str()
        ->group(kTimeGroup);
    command.add_option("--for", options.length, "How long: seconds, MM:SS or HH:MM:SS [for ever]")
        ->type_name("TIME")
        ->group(kTimeGroup);
    command
        .add_option("--clock", options.clock,
                    "steady: clip time runs from the start; wall: clip time is the system's clock, so that two\n"
                    "senders send the same; free: as fast as a file or pipe takes it")
        ->type_name("steady|wall|free")
        ->capture_default_str()
        ->group(kTimeGroup);
}

std::string SendHelp() {
    std::string text =
        "Where to: udp://HOST:PORT or rtp://HOST:PORT, one receiver or a group; srt://, rist:// or tcp://HOST:PORT\n"
        "or rtmp://HOST/APP/KEY, a connection that is made again when it breaks; a file; - for standard output.\n"
        "Behind udp and rtp: ?ttl=N, &localaddr=ADDRESS, &localport=PORT, &mtu=BYTES; behind the others, what FFmpeg "
        "takes.\n"
        "\nPicture codecs:\n";
    for (const lineup::VideoCodec& codec : lineup::StreamVideoCodecs()) {
        text += fmt::format("  {:<12}{}\n", codec.name, codec.description);
    }
    text += "\nSound codecs:\n";
    for (const lineup::AudioCodec& codec : lineup::StreamAudioCodecs()) {
        text += fmt::format("  {:<12}{}\n", codec.name, codec.description);
    }
    return text +
           "\nExamples:\n"
           "  lineup send udp://239.1.2.3:5000?ttl=4 --ident blits     until Ctrl-C\n"
           "  lineup send udp://10.0.0.7:5000 --bitrate 8M --audio-codec s302m\n"
           "  lineup send rtmp://live.example/app/key                  H.264 and AAC as FLV\n"
           "  lineup send rtp://239.1.2.3:5004 --format l24 --packet-time 0.125 --sdp tone.sdp\n"
           "  lineup send - --for 60 --clock free | ffprobe -";
}

}  // namespace

void AddSendCommand(CLI::App& app) {
    auto options = std::make_shared<SendOptions>();
    CLI::App* const command = app.add_subcommand("send", "Send a clip as a stream that keeps running");
    command
        ->add_option("TO", options->targets, "Where to: URLs, files, or - for standard output; all get the same stream")
        ->required();
    AddPictureOptions(*command, options->picture);
    AddScanOption(*command, options->scan);
    AddSendTimeOptions(*command, *options);
    AddToneOptions(*command, options->common);
    AddStreamOptions(*command, *options);
    command->add_flag("-q,--quiet", options->quiet, "Say nothing unless something is wrong");
    command->add_flag("--json", options->json, "Print JSON, a line each second");
    AddPluginOption(*command, options->common);
    command->footer(SendHelp());
    command->callback([options] { RunSend(*options); });
}

}  // namespace cli
