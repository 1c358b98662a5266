#include "Host/Lineup/Export/Plan/PlanOrigin.h"

#include <lineup/Error.h>
#include <lineup/Idents.h>
#include <lineup/Level.h>

#include <fmt/chrono.h>
#include <fmt/format.h>

#include <ctime>

namespace lineup {

namespace {

std::string Describe(const Clip& clip) {
    if (!clip.Settings() || AsksForUnknownIdent(*clip.Settings())) {
        return {};
    }
    if (const Ident* const ident = FindIdent(*clip.Settings())) {
        return std::string(ident->title);
    }
    return fmt::format("{:g} Hz at {:.2f} dBFS peak", clip.Settings()->frequency,
                       DbFromGain(static_cast<double>(clip.Settings()->amplitude)));
}

// A moment that was given is told as everywhere, in UTC; now, as clocks of the place show it.
std::tm Moment(std::optional<std::int64_t> date) {
    const std::time_t seconds = date ? static_cast<std::time_t>(*date) : std::time(nullptr);
    std::tm moment{};
    if ((date ? gmtime_r(&seconds, &moment) : localtime_r(&seconds, &moment)) == nullptr) {
        throw Error(fmt::format("cannot say the date {} seconds after 1970", seconds));
    }
    return moment;
}

}  // namespace

OriginPlan PlanOrigin(const Clip& clip, const ExportSettings& settings) {
    OriginPlan origin{.description = Describe(clip), .date = {}, .time = {}};
    if (settings.date || !settings.reproducible) {
        const std::tm moment = Moment(settings.date);
        origin.date = fmt::format("{:%Y-%m-%d}", moment);
        origin.time = fmt::format("{:%H:%M:%S}", moment);
    }
    return origin;
}

}  // namespace lineup
