#include <lineup/Validation.h>
#include "Host/Lineup/Validation/PromiseGroups.h"

#include <algorithm>
#include <array>
#include <vector>

namespace lineup::validation {

namespace {

struct OutcomeRow {
    std::string_view name;
    bool isFault;
};

// In the order of Outcome.
constexpr std::array<OutcomeRow, 6> kOutcomes = {{
    {"passed", false},
    {"warning", false},
    {"failed", true},
    {"skipped", false},
    {"crashed", true},
    {"timed out", true},
}};
static_assert(kOutcomes.size() == static_cast<std::size_t>(Outcome::TimedOut) + 1);

// In the order of PromiseSet.
constexpr std::array<std::string_view, 2> kSetNames = {"interface", "clip"};
static_assert(kSetNames.size() == static_cast<std::size_t>(PromiseSet::Clip) + 1);

struct Group {
    PromiseSet set;
    std::span<const Promise> (*rows)();
};

constexpr std::array kGroups = {
    Group{PromiseSet::Interface, LoadingPromises},  Group{PromiseSet::Interface, ListPromises},
    Group{PromiseSet::Interface, SettingsPromises}, Group{PromiseSet::Interface, DescriptionPromises},
    Group{PromiseSet::Interface, MemoryPromises},   Group{PromiseSet::Interface, AudioPromises},
    Group{PromiseSet::Interface, PeakPromises},     Group{PromiseSet::Interface, FramePromises},
    Group{PromiseSet::Interface, HostilePromises},  Group{PromiseSet::Interface, OrderPromises},
    Group{PromiseSet::Clip, ClipSettingsPromises},  Group{PromiseSet::Clip, ClipSoundPromises},
    Group{PromiseSet::Clip, ClipTimelinePromises},  Group{PromiseSet::Clip, ClipPeakPromises},
    Group{PromiseSet::Clip, ClipHostilePromises},   Group{PromiseSet::Clip, ClipPicturePromises},
};

std::vector<Promise> Collect() {
    std::vector<Promise> promises;
    for (const Group& group : kGroups) {
        for (Promise promise : group.rows()) {
            promise.set = group.set;
            promises.push_back(promise);
        }
    }
    return promises;
}

}  // namespace

std::string_view OutcomeName(Outcome outcome) {
    return kOutcomes.at(static_cast<std::size_t>(outcome)).name;
}

bool IsFault(Outcome outcome) {
    return kOutcomes.at(static_cast<std::size_t>(outcome)).isFault;
}

std::string_view PromiseSetName(PromiseSet set) {
    return kSetNames.at(static_cast<std::size_t>(set));
}

bool ShutsTheGate(const Promise& promise, Outcome outcome) {
    switch (promise.gate) {
        case Gate::ShutWhenAtFault:
            return IsFault(outcome);
        case Gate::ShutWhenEnded:
            return outcome == Outcome::Crashed || outcome == Outcome::TimedOut;
        case Gate::Open:
            break;
    }
    return false;
}

std::span<const Promise> Promises() {
    static const std::vector<Promise> promises = Collect();
    return promises;
}

const Promise* FindPromise(std::string_view id) {
    const auto promises = Promises();
    const auto promise = std::ranges::find(promises, id, &Promise::id);
    return promise == promises.end() ? nullptr : &*promise;
}

}  // namespace lineup::validation
