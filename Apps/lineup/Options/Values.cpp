#include "Apps/lineup/Options/Values.h"

#include <lineup/UsageError.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>
#include <system_error>
#include <vector>

using zelmediatypes::kTicksPerSecond;
using zelmediatypes::TickTime;

namespace cli {

namespace {

constexpr std::int64_t kMostSeconds = 3600LL * 1000;

// The whole of `text` as a number.
template <class Number>
std::optional<Number> Parse(std::string_view text) {
    Number number{};
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end) {
        return std::nullopt;
    }
    return number;
}

std::vector<std::string_view> Split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    for (;;) {
        const std::size_t at = text.find(separator);
        parts.push_back(text.substr(0, at));
        if (at == std::string_view::npos) {
            return parts;
        }
        text.remove_prefix(at + 1);
    }
}

bool IsDigits(std::string_view text) {
    return !text.empty() && std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

// "7", "7.25" or ".5" in ticks, exact to the microsecond; nothing for any other text.
std::optional<std::int64_t> ParseSeconds(std::string_view text) {
    constexpr std::size_t kMostDigits = 7;  // 10^7 seconds still fit 64 bits of ticks
    const std::size_t point = text.find('.');
    const std::string_view whole = text.substr(0, point);
    const std::string_view fraction = point == std::string_view::npos ? "0" : text.substr(point + 1);
    if (!IsDigits(whole) || !IsDigits(fraction) || whole.size() > kMostDigits || fraction.size() > kMostDigits) {
        return std::nullopt;
    }
    std::int64_t ticks = *Parse<std::int64_t>(whole) * kTicksPerSecond;
    std::int64_t place = kTicksPerSecond;
    for (const char digit : fraction) {
        place /= 10;
        ticks += (digit - '0') * place;
    }
    return ticks;
}

// Hours and minutes in front of the seconds.
std::optional<std::int64_t> ParseClock(std::string_view text) {
    const auto parts = Split(text, ':');
    if (parts.size() > 3) {
        return std::nullopt;
    }
    std::int64_t minutes = 0;
    for (std::size_t i = 0; i + 1 < parts.size(); ++i) {
        const auto part = IsDigits(parts[i]) && parts[i].size() <= 5 ? Parse<std::int64_t>(parts[i]) : std::nullopt;
        if (!part || (i > 0 && *part >= 60)) {
            return std::nullopt;
        }
        minutes = minutes * 60 + *part;
    }
    const auto ticks = ParseSeconds(parts.back());
    const bool overflowsMinute = parts.size() > 1 && ticks && *ticks >= 60 * kTicksPerSecond;
    if (!ticks || overflowsMinute || minutes > kMostSeconds / 60) {
        return std::nullopt;
    }
    const std::int64_t whole = minutes * 60 * kTicksPerSecond;
    const bool tooLong = *ticks > kMostSeconds * kTicksPerSecond - whole;
    return tooLong ? std::nullopt : std::optional(whole + *ticks);
}

struct ShortRate {
    std::string_view text;
    lineup::Rational rate;
};
constexpr std::array<ShortRate, 8> kShortRates = {{
    {"23.976", {24000, 1001}},
    {"23.98", {24000, 1001}},
    {"29.97", {30000, 1001}},
    {"47.952", {48000, 1001}},
    {"47.95", {48000, 1001}},
    {"59.94", {60000, 1001}},
    {"119.88", {120000, 1001}},
    {"14.985", {15000, 1001}},
}};

}  // namespace

double ParseNumber(std::string_view option, std::string_view text, std::string_view expected) {
    const auto number = Parse<double>(text);
    if (!number || !std::isfinite(*number)) {
        throw lineup::UsageError(std::string(option), std::string(text), std::string(expected));
    }
    return *number;
}

Size ParseSize(std::string_view text) {
    const auto parts = Split(text, 'x');
    const auto width = Parse<int>(parts.front());
    const auto height = parts.size() == 2 ? Parse<int>(parts.back()) : std::nullopt;
    if (!width || !height) {
        throw lineup::UsageError("size", std::string(text), "must be WIDTHxHEIGHT in pixels, such as 1920x1080");
    }
    return {*width, *height};
}

lineup::Rational ParseFrameRate(std::string_view text) {
    const auto* const known = std::ranges::find(kShortRates, text, &ShortRate::text);
    if (known != kShortRates.end()) {
        return known->rate;
    }
    const auto parts = Split(text, '/');
    const auto num = Parse<int>(parts.front());
    const auto den = parts.size() == 2 ? Parse<int>(parts.back()) : std::optional(1);
    if (parts.size() > 2 || !num || !den || *num <= 0 || *den <= 0) {
        throw lineup::UsageError("fps", std::string(text),
                                 "must be frames a second, whole (25) or a fraction (30000/1001)");
    }
    return {*num, *den};
}

TickTime ParseTime(std::string_view option, std::string_view text) {
    const bool negative = text.starts_with('-');
    const auto ticks = ParseClock(text.substr(negative ? 1 : 0));
    if (!ticks) {
        throw lineup::UsageError(std::string(option), std::string(text),
                                 "must be seconds (2.5), MM:SS or HH:MM:SS, at most 1000 hours");
    }
    return TickTime(negative ? -*ticks : *ticks);
}

std::int64_t NearestIndex(TickTime time, lineup::Rational rate) {
    __extension__ using Int128 = __int128;
    const Int128 divisor = Int128{2} * rate.den * kTicksPerSecond;
    const Int128 twice = Int128{2} * time.Ticks() * rate.num + Int128{rate.den} * kTicksPerSecond;
    const Int128 quotient = twice / divisor;
    return static_cast<std::int64_t>(twice % divisor < 0 ? quotient - 1 : quotient);
}

}  // namespace cli
