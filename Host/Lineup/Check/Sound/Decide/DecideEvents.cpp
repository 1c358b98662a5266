#include "Host/Lineup/Check/Sound/Decide/Case.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace lineup::sound {

namespace {

constexpr std::size_t kMostListed = 20;  // faults of events; more are counted in a note
constexpr double kSplice = 0.03;         // s from where the line-up begins or ends, beside other sound
constexpr double kCauseOfDip = 0.03;     // s: what gain follows is as near to where it moves

std::string Place(double seconds) {
    return fmt::format("{:.3f} s", seconds);
}

// The inputs, where not all have it.
std::string Where(const Case& check, const SoundEvent& event) {
    const auto sounding = std::ranges::count_if(
        check.lineup->inputs, [](const InputFindings& input) { return input.surveyed.arrival.sounds; });
    return static_cast<std::ptrdiff_t>(event.inputs.size()) >= sounding
               ? std::string()
               : fmt::format(" at input{} {}", event.inputs.size() == 1 ? "" : "s", InputList(event.inputs));
}

void AddJump(Case& check, const SoundEvent& event, double at) {
    const double samples = event.amount * check.facts->rate;
    const bool lost = samples > 0;
    AddFault(check, lost ? "samples-lost" : "samples-repeated", {},
             fmt::format("At {} {:.1f} samples {}{}.", Place(at), std::abs(samples), lost ? "are lost" : "come twice",
                         event.sure ? "" : ", or whole periods of the tone more or fewer"))
        .measured = std::abs(samples);
}

void AddFault(Case& check, const SoundEvent& event, double at) {
    switch (event.kind) {
        case SoundEvent::Kind::Dropout:
            AddFault(check, "dropout", event.inputs,
                     fmt::format("From {} on {:.1f} ms are silent or damaged{}.", Place(at), event.amount * 1000,
                                 Where(check, event)))
                .measured = event.amount;
            break;
        case SoundEvent::Kind::Jump:
            AddJump(check, event, at);
            break;
        case SoundEvent::Kind::Click:
            AddFault(check, "click", event.inputs, fmt::format("A click at {}{}.", Place(at), Where(check, event)));
            break;
        case SoundEvent::Kind::Dip:
            AddFault(check, "level-changes", event.inputs,
                     fmt::format("At {} the level goes {} by {:.2f} dB for a moment{}.", Place(at),
                                 event.amount > 0 ? "up" : "down", std::abs(event.amount), Where(check, event)));
            check.findings->faults.back().measured = event.amount;
            break;
        case SoundEvent::Kind::LevelStep:
            return;
    }
    check.findings->faults.back().at = at;
}

// Where the line-up meets what comes before or after it, samples need not follow from each other.
bool IsSplice(const Case& check, const SoundEvent& event) {
    const Lineup& lineup = *check.lineup;
    return event.kind == SoundEvent::Kind::Click && ((lineup.startSeen && event.at < lineup.startsAt + kSplice) ||
                                                     (lineup.endSeen && event.at > lineup.endsAt - kSplice));
}

// Whether the sequence has a tone begin or end between two places.
bool HasEdgeBetween(const Case& check, double first, double last) {
    const Placing& placing = check.lineup->lastPlacing;
    const double cycle = check.Sent().cycle;
    const double from = placing.ToClip(first);
    const double to = from + (last - first) * placing.tempo;
    return std::ranges::any_of(check.Sent().bursts, [&](const RefBurst& burst) {
        const bool endless = burst.off - burst.on >= cycle - 1e-6;
        const auto isWithin = [&](double edge) { return edge + std::ceil((from - edge) / cycle) * cycle < to; };
        return !endless && (isWithin(burst.on) || isWithin(burst.off));
    });
}

// Edges know what two jumps between the same two of them lose together; how much of it each does, phases know but for
// whole periods.
void DoubtJumpsBetweenEdges(const Case& check, std::vector<SoundEvent>& events) {
    SoundEvent* before = nullptr;
    for (SoundEvent& event : events) {
        if (event.kind != SoundEvent::Kind::Jump) {
            continue;
        }
        if (before != nullptr && !HasEdgeBetween(check, before->at, event.at)) {
            before->sure = false;
            event.sure = false;
        }
        before = &event;
    }
}

// Dips of the gain are one fault: the first of those that nothing else explains, as a click that gain followed, where
// levels are not said to change anyway.
void KeepOneDip(const Case& check, std::vector<SoundEvent>& events) {
    bool named = std::ranges::any_of(check.findings->faults,
                                     [](const CheckFault& fault) { return fault.id == "level-changes"; });
    const std::vector<SoundEvent> all = events;
    std::erase_if(events, [&](const SoundEvent& event) {
        if (event.kind != SoundEvent::Kind::Dip) {
            return false;
        }
        const bool isExplained =
            named || std::ranges::any_of(all, [&](const SoundEvent& other) {
                return other.kind != SoundEvent::Kind::Dip && std::abs(other.at - event.at) < kCauseOfDip;
            });
        named = named || !isExplained;
        return isExplained;
    });
}

}  // namespace

void DecideEvents(Case& check) {
    std::vector<SoundEvent> events = check.lineup->events;
    std::erase_if(events, [&](const SoundEvent& event) {
        return event.kind == SoundEvent::Kind::LevelStep || IsSplice(check, event);
    });
    KeepOneDip(check, events);
    std::ranges::stable_sort(events, {}, &SoundEvent::at);
    DoubtJumpsBetweenEdges(check, events);
    for (std::size_t i = 0; i < std::min(events.size(), kMostListed); ++i) {
        AddFault(check, events[i], check.facts->startSeconds + events[i].at);
    }
    const std::size_t more = events.size() - std::min(events.size(), kMostListed) + check.lineup->moreEvents;
    if (more > 0) {
        check.Note("more-events", fmt::format("{} more dropouts, jumps of time and clicks.", more));
    }
}

}  // namespace lineup::sound
