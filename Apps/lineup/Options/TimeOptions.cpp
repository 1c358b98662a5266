#include "Apps/lineup/Options/TimeOptions.h"

#include <lineup/UsageError.h>
#include "Apps/lineup/Options/CommonOptions.h"
#include "Apps/lineup/Options/Values.h"

#include <fmt/format.h>

#include <cmath>

using zelmediatypes::TickTime;

namespace cli {

namespace {

TickTime WholeCycles(double cycles, const lineup::Clip& clip) {
    const lineup::Ident* const ident = PlayedIdent(clip);
    if (ident == nullptr) {
        throw lineup::UsageError("cycles", fmt::format("{}", cycles),
                                 "counts the cycles of an ident: choose one, or give a duration instead");
    }
    constexpr double kMostCycles = 100000;
    if (cycles < 1 || cycles > kMostCycles || cycles != std::floor(cycles)) {
        throw lineup::UsageError("cycles", fmt::format("{}", cycles),
                                 fmt::format("must be a whole number from 1 to {}", kMostCycles));
    }
    return TickTime(ident->cycleTicks * static_cast<std::int64_t>(cycles));
}

}  // namespace

std::int64_t TimeOptions::StartSample(const lineup::Clip& clip) const {
    return NearestIndex(ParseTime("start", start), {static_cast<int>(clip.SampleRate()), 1});
}

std::optional<TickTime> TimeOptions::Duration(const lineup::Clip& clip) const {
    if (cycles) {
        return WholeCycles(*cycles, clip);
    }
    if (!duration) {
        return std::nullopt;
    }
    const TickTime time = ParseTime("duration", *duration);
    if (time <= zelmediatypes::kTime_Zero) {
        throw lineup::UsageError("duration", *duration, "must be above 0");
    }
    return time;
}

void AddTimeOptions(CLI::App& command, TimeOptions& options, const std::string& usualDuration) {
    CLI::Option* const duration =
        command
            .add_option("--duration", options.duration,
                        fmt::format("How long: seconds, MM:SS or HH:MM:SS [{}]", usualDuration))
            ->type_name("TIME")
            ->group(kTimeGroup);
    AddNumber(command, "cycles", options.cycles, "How long: whole cycles of the ident", "cycles")
        ->group(kTimeGroup)
        ->excludes(duration);
    command.add_option("--start", options.start, "Clip time at which to begin")
        ->type_name("TIME")
        ->capture_default_str()
        ->group(kTimeGroup);
}

const lineup::Ident* PlayedIdent(const lineup::Clip& clip) {
    const std::optional<lineup::BarsAndToneInfo>& settings = clip.Settings();
    return settings ? lineup::FindIdent(*settings) : nullptr;
}

TickTime DescribedDuration(const lineup::Clip& clip) {
    return zelmediatypes::FrameRateFromHz(clip.SampleRate()) * clip.DurationSamples();
}

}  // namespace cli
