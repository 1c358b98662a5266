#include <lineup/TimeAxis.h>

#include <fmt/format.h>

#include <array>
#include <cstdint>
#include <string_view>

using zelmediatypes::kTicksPerSecond;
using zelmediatypes::TickTime;

namespace lineup {

namespace {

constexpr std::int64_t kMicrosecond = kTicksPerSecond / 1000000;
constexpr std::int64_t kMillisecond = kTicksPerSecond / 1000;
constexpr std::int64_t kMinute = 60 * kTicksPerSecond;
constexpr std::int64_t kHour = 60 * kMinute;

// Between the decimal steps of seconds and those of hours.
constexpr std::array kClockSteps = {
    10 * kTicksPerSecond, 20 * kTicksPerSecond, 30 * kTicksPerSecond, kMinute,      2 * kMinute,
    5 * kMinute,          10 * kMinute,         20 * kMinute,         30 * kMinute,
};

// The first of unit, 2 unit, 5 unit, 10 unit, ... that is not below `atLeast`.
std::int64_t DecimalStep(std::int64_t unit, std::int64_t atLeast) {
    for (;; unit *= 10) {
        for (const int digit : {1, 2, 5}) {
            if (digit * unit >= atLeast) {
                return digit * unit;
            }
        }
    }
}

// The decimals that count microseconds below `unit`, as many as a multiple of `step` needs: ".25", or nothing.
std::string Fraction(std::int64_t ticks, std::int64_t unit, std::int64_t step) {
    std::string text;
    for (std::int64_t place = unit; step % place != 0 && place > kMicrosecond;) {
        const std::int64_t rest = ticks % place;
        place /= 10;
        text += static_cast<char>('0' + rest / place);
    }
    return text.empty() ? text : "." + text;
}

}  // namespace

TickTime NiceTimeStep(TickTime atLeast) {
    if (atLeast.Ticks() <= 5 * kTicksPerSecond) {
        return TickTime(DecimalStep(kMicrosecond, atLeast.Ticks()));
    }
    for (const std::int64_t step : kClockSteps) {
        if (step >= atLeast.Ticks()) {
            return TickTime(step);
        }
    }
    return TickTime(DecimalStep(kHour, atLeast.Ticks()));
}

std::string TimeLabel(TickTime time, TickTime step, TickTime furthest) {
    const std::string_view sign = time.Ticks() < 0 ? "\u2212" : "";  // a minus as wide as a digit
    const std::int64_t ticks = time.Ticks() < 0 ? -time.Ticks() : time.Ticks();
    if (furthest.Ticks() < kTicksPerSecond) {
        return fmt::format("{}{}{} ms", sign, ticks / kMillisecond, Fraction(ticks, kMillisecond, step.Ticks()));
    }
    const std::int64_t wholeSeconds = ticks / kTicksPerSecond;
    const std::string fraction = Fraction(ticks, kTicksPerSecond, step.Ticks());
    if (furthest.Ticks() < kMinute) {
        return fmt::format("{}{}{} s", sign, wholeSeconds, fraction);
    }
    const std::int64_t minutes = wholeSeconds / 60;
    if (furthest.Ticks() < kHour) {
        return fmt::format("{}{}:{:02}{}", sign, minutes, wholeSeconds % 60, fraction);
    }
    return fmt::format("{}{}:{:02}:{:02}{}", sign, minutes / 60, minutes % 60, wholeSeconds % 60, fraction);
}

}  // namespace lineup
