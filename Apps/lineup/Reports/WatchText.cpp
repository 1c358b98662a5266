#include "Apps/lineup/Reports/WatchText.h"

#include <lineup/Idents.h>
#include "Apps/lineup/Reports/CheckTable.h"

#include <fmt/format.h>

#include <cmath>
#include <optional>
#include <string_view>

namespace cli {

namespace {

std::string CycleOutcome(const lineup::WatchedCycle& cycle) {
    if (cycle.verdict == lineup::CheckVerdict::Right) {
        return "nothing wrong";
    }
    std::string text;
    for (const std::string& id : cycle.faults) {
        text += (text.empty() ? "" : ", ") + id;
    }
    return text.empty() ? "cannot tell" : text;
}

std::string GainText(const lineup::WatchedCycle& cycle) {
    constexpr double kSame = 0.005;  // dB
    if (!cycle.leastGain || !cycle.mostGain) {
        return {};
    }
    const auto rounded = [](double gain) { return std::abs(gain) < kSame ? 0.0 : gain; };
    return *cycle.mostGain - *cycle.leastGain < kSame
               ? fmt::format("  {:.2f} dB", rounded(*cycle.mostGain))
               : fmt::format("  {:.2f} to {:.2f} dB", rounded(*cycle.leastGain), rounded(*cycle.mostGain));
}

// Nothing where it is not known, or too small to be seen.
std::string Figure(const char* name, const std::optional<double>& value, const char* unit, double least = 0) {
    constexpr double kStill = 0.05;
    if (!value || std::abs(*value) < least) {
        return {};
    }
    return fmt::format("  {} {:+.1f} {}", name, std::abs(*value) < kStill ? 0.0 : *value, unit);
}

std::string ClocksText(const lineup::WatchedClocks& clocks) {
    constexpr double kLeastJitter = 0.5;
    const std::string jitter =
        clocks.jitterUs && *clocks.jitterUs >= kLeastJitter ? fmt::format("  jitter {:.1f} us", *clocks.jitterUs) : "";
    return Figure("sound", clocks.soundPpm, "ppm") + Figure("sender", clocks.senderPpm, "ppm") +
           (clocks.arrivalMs ? fmt::format("  arrival {:.1f} ms", *clocks.arrivalMs) : "") + jitter;
}

std::string AlignmentText(const lineup::WatchedAlignment& alignment) {
    constexpr double kLeastMoved = 0.05;
    return Figure("a/v", alignment.offsetMs, "ms") + Figure("moved", alignment.movedMs, "ms", kLeastMoved);
}

std::string CardText(const std::string& card) {
    return card.empty() ? "" : card == "hd" ? "HD card" : "SD card";
}

std::string LineupName(const lineup::WatchReport& report) {
    const lineup::Ident* const ident = lineup::FindIdent(report.expected);
    const std::string sound = ident != nullptr ? std::string(ident->title) : report.expected;
    const std::string card = CardText(report.card);
    return sound.empty() && card.empty() ? "no line-up" : sound + (sound.empty() || card.empty() ? "" : "; ") + card;
}

}  // namespace

std::string CycleText(const lineup::WatchedCycle& cycle) {
    const std::string card = CardText(cycle.card);
    return fmt::format("{:>11}  cycle {:<4}  {}{}{}{}{}\n", PlaceText(cycle.start), cycle.number, CycleOutcome(cycle),
                       GainText(cycle), card.empty() ? "" : "  " + card, AlignmentText(cycle.alignment),
                       ClocksText(cycle.clocks));
}

std::string WatchedFaultText(const lineup::WatchedFault& fault) {
    if (fault.isMoment || !fault.ends) {
        return fmt::format("{:>11}  {}  {}\n", PlaceText(fault.begins), fault.isMoment ? "fault " : "begins",
                           fault.fault.text);
    }
    return fmt::format("{:>11}  ends    {}\n", PlaceText(*fault.ends), fault.fault.text);
}

std::string WatchSummaryText(const lineup::WatchReport& report) {
    std::string text =
        fmt::format("\n{}, {} heard, {} {}, {} of them right\n", LineupName(report), PlaceText(report.seconds),
                    report.cycles, report.cycles == 1 ? "cycle" : "cycles", report.rightCycles);
    const auto count = static_cast<std::int64_t>(report.faults.size()) + report.moreFaults;
    text += report.verdict == lineup::CheckVerdict::Right ? "nothing wrong\n"
            : report.verdict == lineup::CheckVerdict::CannotTell
                ? "cannot tell\n"
                : fmt::format("{} {}\n", count, count == 1 ? "fault" : "faults");
    for (const lineup::WatchedFault& fault : report.faults) {
        const std::string until = fault.isMoment ? "" : fault.ends ? " to " + PlaceText(*fault.ends) : " on";
        text += fmt::format("  {}{}  {}\n", PlaceText(fault.begins), until, fault.fault.text);
    }
    if (report.moreFaults > 0) {
        text += fmt::format("  and {} more\n", report.moreFaults);
    }
    for (const lineup::CheckNote& note : report.notes) {
        text += fmt::format("note: {}\n", note.text);
    }
    return text;
}

}  // namespace cli
