#include "Host/Lineup/Check/ReadingFaults.h"

#include <lineup/Idents.h>
#include "Host/Interface/Media/TickTime.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <limits>
#include <string_view>

namespace lineup {

namespace {

constexpr std::size_t kMostDropouts = 20;  // listed one by one
constexpr double kFrame = 0.03;            // s: the time stamps of a lossy codec may be off by one of its frames
constexpr double kNear = 0.1;              // s: two findings at one place

struct Stretch {
    double start;  // s
    double end;
};

Stretch Lineup(const SoundReport& sound) {
    constexpr double kForEver = std::numeric_limits<double>::infinity();
    const double start = sound.startsAt.value_or(0);
    const Ident* const ident = FindIdent(sound.expected);
    if (ident == nullptr || !sound.cycles) {
        return {start, kForEver};
    }
    const double cycle = static_cast<double>(ident->cycleTicks) / static_cast<double>(zelmediatypes::kTicksPerSecond);
    return {start, start + *sound.cycles * cycle / (sound.speed ? sound.speed->ratio : 1)};
}

bool Overlaps(const Stretch& one, const Stretch& other) {
    return one.start <= other.end + kNear && other.start <= one.end + kNear;
}

// Something else that was found there is the same, and says more.
bool IsKnown(const CheckReport& report, const Stretch& stretch) {
    constexpr std::array<std::string_view, 4> kOfThatKind = {"dropout", "samples-lost", "samples-repeated", "click"};
    return std::ranges::any_of(report.faults, [&](const CheckFault& fault) {
        return fault.at && std::ranges::find(kOfThatKind, fault.id) != kOfThatKind.end() &&
               Overlaps({*fault.at, *fault.at}, stretch);
    });
}

std::string Place(double seconds) {
    return fmt::format("{:.3f} s", seconds);
}

CheckFault Dropout(double at, std::optional<double> seconds, const std::string& text) {
    return {.id = "dropout",
            .part = CheckPart::Sound,
            .inputs = {},
            .channels = {},
            .measured = seconds,
            .expected = {},
            .unit = "s",
            .at = at,
            .text = text};
}

CheckFault DamageOf(const DamagedStretch& damage, double rate) {
    const double at = static_cast<double>(damage.position) / rate;
    if (damage.count == 0) {
        return Dropout(at, std::nullopt, fmt::format("At {} the recording is damaged: {}.", Place(at), damage.reason));
    }
    const double seconds = static_cast<double>(damage.count) / rate;
    return Dropout(at, seconds,
                   fmt::format("From {} on {} cannot be read: {}.", Place(at), Place(seconds), damage.reason));
}

void AddDamage(const RecordingReader& reader, CheckReport& report) {
    const double rate = reader.SampleRate();
    const Stretch lineup = Lineup(*report.sound);
    const CheckReport before = report;
    std::size_t count = 0;
    for (const DamagedStretch& damage : reader.Damage()) {
        const double start = static_cast<double>(damage.position) / rate;
        const Stretch stretch{start, start + static_cast<double>(damage.count) / rate};
        const bool isCodecs =
            reader.Lossy().value_or(false) && damage.count > 0 && stretch.end - stretch.start < kFrame;
        if (isCodecs || !Overlaps(stretch, lineup) || IsKnown(before, stretch)) {
            continue;
        }
        if (++count <= kMostDropouts) {
            report.faults.push_back(DamageOf(damage, rate));
        }
    }
    if (count > kMostDropouts) {
        report.notes.push_back(
            {.id = "more-dropouts", .text = fmt::format("{} more stretches are damaged.", count - kMostDropouts)});
    }
}

}  // namespace

CheckNote WhyUnreadable(const Unreadable& unreadable) {
    if (unreadable.Reason() == Unreadable::Why::NoSound) {
        return {.id = "no-sound",
                .part = CheckPart::Sound,
                .text = fmt::format("There is no sound: {}.", unreadable.what())};
    }
    return {.id = "unreadable",
            .part = CheckPart::Both,
            .text = fmt::format("The recording cannot be read: {}.", unreadable.what())};
}

void AddReadingFaults(const RecordingReader& reader, bool isStream, std::int64_t samples, CheckReport& report) {
    const double end = static_cast<double>(samples) / reader.SampleRate();
    const bool isFound = report.verdict != CheckVerdict::CannotTell;
    if (isFound) {
        AddDamage(reader, report);
    }
    if (const auto why = reader.EndedBecause()) {
        const std::string text = fmt::format("After {} nothing more could be read: {}.", Place(end), *why);
        if (isFound && reader.HasBrokenOff() && !isStream) {
            report.faults.push_back(Dropout(end, std::nullopt, text));
        } else {
            report.notes.push_back({.id = "ended-early", .text = text});
        }
    }
    if (isFound && !report.faults.empty()) {
        report.verdict = CheckVerdict::Faults;
    }
}

}  // namespace lineup
