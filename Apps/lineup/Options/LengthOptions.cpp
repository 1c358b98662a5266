#include "Apps/lineup/Options/LengthOptions.h"

#include <lineup/UsageError.h>
#include "Apps/lineup/Options/Values.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>

namespace cli {

namespace {

using lineup::Rational;
using lineup::Timecode;

constexpr const char* kUsualDuration = "5";

// HH:MM:SS:FF or HH:MM:SS;FF, which no time is.
bool IsLabel(std::string_view text) {
    return std::ranges::count(text, ':') == 3 || text.find(';') != std::string_view::npos;
}

std::int64_t FramesOfLabel(const char* option, const std::string& text, Rational frameRate) {
    try {
        return Timecode(text, frameRate).Frames();
    } catch (const lineup::UsageError& error) {
        throw lineup::UsageError(option, text, error.Remedy());
    }
}

std::int64_t FramesUntil(const std::string& text, const std::optional<Timecode>& start, Rational frameRate) {
    if (!start) {
        throw lineup::UsageError("until", text, "needs --timecode, from which on frames are labelled");
    }
    const Timecode end = [&] {
        try {
            return Timecode(text, frameRate);
        } catch (const lineup::UsageError& error) {
            throw lineup::UsageError("until", text, error.Remedy());
        }
    }();
    if (end.DropFrame() != start->DropFrame()) {
        throw lineup::UsageError("until", text,
                                 fmt::format("must be labelled as {} is: both with ; or both with :", start->Text()));
    }
    if (end.Frames() == start->Frames()) {
        throw lineup::UsageError("until", text, "must be another frame than the first");
    }
    return end.Frames() - start->Frames() + (end.Frames() < start->Frames() ? start->FramesADay() : 0);
}

Rational SampleRate(const lineup::Clip& clip) {
    return {static_cast<int>(clip.SampleRate()), 1};
}

// To the nearest sample, where the last frame ends.
std::int64_t SamplesOf(std::int64_t frames, Rational frameRate, const lineup::Clip& clip) {
    __extension__ using Int128 = __int128;
    const Int128 twice = Int128{2} * frames * frameRate.den * SampleRate(clip).num;
    return static_cast<std::int64_t>((twice + frameRate.num) / (Int128{2} * frameRate.num));
}

// The whole frames or samples of a time, one at least.
std::int64_t CountAt(Rational rate, zelmediatypes::TickTime time) {
    return std::max<std::int64_t>(1, NearestIndex(time, rate));
}

}  // namespace

bool LengthOptions::CountsFrames() const {
    return frames || until || (black && IsLabel(*black)) || (time.duration && IsLabel(*time.duration));
}

FileLength LengthOptions::Length(const lineup::Clip& clip, Rational frameRate,
                                 const std::optional<Timecode>& timecode) const {
    FileLength length = ClipLength(clip, frameRate, timecode);
    if (!black) {
        return length;
    }
    if (IsLabel(*black)) {
        length.blackFrames = FramesOfLabel("black", *black, frameRate);
        length.blackSamples = SamplesOf(length.blackFrames, frameRate, clip);
    } else {
        const zelmediatypes::TickTime blackTime = ParseTime("black", *black);
        length.blackFrames = NearestIndex(blackTime, frameRate);
        length.blackSamples = NearestIndex(blackTime, SampleRate(clip));
    }
    if (length.blackFrames < 1) {
        throw lineup::UsageError("black", *black, "must be a frame or more");
    }
    if (until) {
        length.frames -= length.blackFrames;
        length.samples -= length.blackSamples;
        if (length.frames < 1) {
            throw lineup::UsageError("black", *black, fmt::format("leaves nothing of the line-up before {}", *until));
        }
    }
    return length;
}

FileLength LengthOptions::ClipLength(const lineup::Clip& clip, Rational frameRate,
                                     const std::optional<Timecode>& timecode) const {
    if (!frames && !until && !(time.duration && IsLabel(*time.duration))) {
        const auto length = time.Duration(clip).value_or(DescribedDuration(clip));
        const std::int64_t samples = CountAt(SampleRate(clip), length);
        return {.frames = CountAt(frameRate, length),
                .samples = samples,
                .cycleSamples = time.cycles ? std::optional(samples) : std::nullopt};
    }
    const std::int64_t count = frames  ? *frames
                               : until ? FramesUntil(*until, timecode, frameRate)
                                       : FramesOfLabel("duration", *time.duration, frameRate);
    constexpr std::int64_t kMostFrames = 1'000'000'000;
    if (count < 1 || count > kMostFrames) {
        throw lineup::UsageError(frames ? "frames" : "duration", frames ? fmt::format("{}", count) : *time.duration,
                                 fmt::format("must be 1 to {} frames", kMostFrames));
    }
    return {.frames = count, .samples = SamplesOf(count, frameRate, clip)};
}

void AddLengthOptions(CLI::App& command, LengthOptions& options) {
    AddTimeOptions(command, options.time, kUsualDuration);
    CLI::Option* const duration = command.get_option("--duration");
    duration->description(
        fmt::format("How long: seconds, MM:SS or HH:MM:SS, or HH:MM:SS:FF in frames as time code counts them [{}]",
                    kUsualDuration));
    CLI::Option* const cycles = command.get_option("--cycles");
    CLI::Option* const frames = command.add_option("--frames", options.frames, "How long: so many frames")
                                    ->type_name("N")
                                    ->group(kTimeGroup)
                                    ->excludes(duration)
                                    ->excludes(cycles);
    command
        .add_option("--black", options.black,
                    "Black and silence behind the clip, for a time as of --duration; --until is where it ends")
        ->type_name("TIME")
        ->group(kTimeGroup);
    command
        .add_option("--until", options.until, "How long: up to the frame with this time code, which is not in the file")
        ->type_name("HH:MM:SS:FF")
        ->group(kTimeGroup)
        ->excludes(duration)
        ->excludes(cycles)
        ->excludes(frames);
}

}  // namespace cli
