#include "Host/Lineup/Check/Watch/FaultLedger.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

namespace lineup {

namespace {

// While one thing turns into another the level moves for as long as both are in the stretch.
constexpr int kLevelsMoving = 7;
constexpr std::string_view kLevelChanges = "level-changes";

// A step of the level is known to some slots, all else to some milliseconds.
double ReachOf(const CheckFault& fault) {
    constexpr double kNear = 0.1;
    constexpr double kNearStep = 1.5;
    return fault.id == kLevelChanges ? kNearStep : kNear;
}

bool AreAlike(const CheckFault& a, const CheckFault& b) {
    return a.id == b.id && a.part == b.part && a.inputs == b.inputs;
}

bool IsAmong(const std::vector<CheckFault>& faults, const CheckFault& fault) {
    return std::ranges::any_of(faults, [&](const CheckFault& other) { return AreAlike(other, fault); });
}

}  // namespace

int FaultLedger::NeededOf(const CheckFault& fault) const {
    return fault.id == kLevelChanges ? kLevelsMoving : mTimes;
}

FaultLedger::Standing* FaultLedger::Find(const CheckFault& fault) {
    const auto found =
        std::ranges::find_if(mStanding, [&](const Standing& standing) { return AreAlike(standing.fault, fault); });
    return found == mStanding.end() ? nullptr : &*found;
}

void FaultLedger::TakeStanding(const std::vector<CheckFault>& faults, double start, const Locate& locate) {
    const bool isFirst = !std::exchange(mHasStarted, true);
    const double before = isFirst ? start : mLastStart;
    mLastStart = start;
    for (const CheckFault& fault : faults) {
        Standing* standing = Find(fault);
        if (standing == nullptr) {
            standing = &mStanding.emplace_back();
            standing->begins = isFirst ? start : locate(before, start, fault.inputs, {});
        }
        standing->fault = fault;
        standing->missed = 0;
        if (++standing->seen >= NeededOf(fault) && !standing->isTold) {
            Tell(*standing);
        }
    }
    for (Standing& standing : mStanding) {
        if (!IsAmong(faults, standing.fault)) {
            standing.ends =
                standing.missed == 0 ? locate(before, start, standing.fault.inputs, standing.begins) : standing.ends;
            ++standing.missed;
        }
    }
    std::erase_if(mStanding, [](const Standing& standing) { return !standing.isTold && standing.missed > 0; });
    const std::vector<Standing> all = mStanding;
    for (const Standing& standing : all) {
        if (standing.missed >= mTimes) {
            End(standing.fault, standing.ends);
        }
    }
}

void FaultLedger::Tell(Standing& standing) {
    standing.isTold = true;
    standing.fault.at = standing.begins;
    if (mListener->onBegins) {
        mListener->onBegins({.fault = standing.fault, .begins = standing.begins, .ends = {}});
    }
}

void FaultLedger::Begin(const CheckFault& fault, double at) {
    if (Find(fault) == nullptr) {
        mStanding.push_back({.fault = fault, .begins = at, .ends = at, .seen = mTimes});
        Tell(mStanding.back());
    }
}

void FaultLedger::End(const CheckFault& fault, double at) {
    const auto found =
        std::ranges::find_if(mStanding, [&](const Standing& standing) { return AreAlike(standing.fault, fault); });
    if (found == mStanding.end()) {
        return;
    }
    WatchedFault ended{.fault = found->fault, .begins = found->begins, .ends = std::max(at, found->begins)};
    ended.fault.at = ended.begins;
    mStanding.erase(found);
    Keep(ended);
    if (mListener->onEnds) {
        mListener->onEnds(ended);
    }
}

void FaultLedger::Finish() {
    for (Standing& standing : mStanding) {
        if (!standing.isTold && standing.fault.id != kLevelChanges) {
            Tell(standing);
        }
    }
    for (const Standing& standing : mStanding) {
        if (standing.isTold) {
            Keep({.fault = standing.fault, .begins = standing.begins, .ends = {}});
        }
    }
    std::ranges::stable_sort(mReport->faults, {}, &WatchedFault::begins);
}

bool FaultLedger::IsKnown(const CheckFault& moment) const {
    const double at = moment.at.value_or(0);
    return std::ranges::any_of(mRecent, [&](const WatchedFault& other) {
        const double reach = std::max(ReachOf(moment), ReachOf(other.fault));
        return other.isMoment && at >= other.begins - reach && at <= *other.ends + reach;
    });
}

void FaultLedger::TakeMoments(std::span<const CheckFault> faults) {
    std::vector<WatchedFault> moments;
    for (const CheckFault& fault : faults) {
        if (!IsKnown(fault)) {
            const double at = fault.at.value_or(0);
            const double lasts = fault.unit == "s" ? fault.measured.value_or(0) : 0;
            moments.push_back({.fault = fault, .begins = at, .ends = at + lasts, .isMoment = true});
        }
    }
    for (const WatchedFault& moment : moments) {
        Keep(moment);
        if (mListener->onBegins) {
            mListener->onBegins(moment);
        }
    }
}

void FaultLedger::Keep(const WatchedFault& fault) {
    mRecent.push_back(fault);
    if (mReport->faults.size() < WatchReport::kMostFaults) {
        mReport->faults.push_back(fault);
    } else {
        ++mReport->moreFaults;
    }
}

std::vector<std::string> FaultLedger::IdsWithin(double start, double end) const {
    std::vector<std::string> ids;
    const auto add = [&ids](const std::string& id) {
        if (std::ranges::find(ids, id) == ids.end()) {
            ids.push_back(id);
        }
    };
    for (const WatchedFault& fault : mRecent) {
        const bool isIn = fault.isMoment ? fault.begins >= start && fault.begins < end
                                         : fault.begins < end && fault.ends.value_or(end) > start;
        if (isIn) {
            add(fault.fault.id);
        }
    }
    for (const Standing& standing : mStanding) {
        if (standing.isTold && standing.begins < end && (standing.missed == 0 || standing.ends > start)) {
            add(standing.fault.id);
        }
    }
    return ids;
}

void FaultLedger::Forget(double before) {
    while (!mRecent.empty() && mRecent.front().ends.value_or(before) < before) {
        mRecent.pop_front();
    }
}

}  // namespace lineup
