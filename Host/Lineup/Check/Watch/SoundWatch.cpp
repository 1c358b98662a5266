#include "Host/Lineup/Check/Watch/SoundWatch.h"

#include "Host/Lineup/Check/Asked.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace lineup {

inline namespace parts {

namespace {

constexpr double kKeptSeconds = 40;       // a stretch, what may have changed before it, and a cycle before that
constexpr double kLookEvery = 2;          // s, while no line-up is found
constexpr double kLookLongest = 20;       // s that are looked at then
constexpr double kToneLooked = 10;        // s: what was a tone for shorter may be part of a sequence
constexpr double kToneCycle = 4;          // s
constexpr double kWholeCycle = 1.12;      // of a cycle: any stretch of that length has all of it
constexpr double kShortestStretch = 7;    // s
constexpr double kLongestStride = 3;      // s from one stretch to the next
constexpr double kToBeSure = 3.5;         // s that must have been heard after an event
constexpr double kGoneAfter = 4.2;        // s without a line-up
constexpr double kGapOfSequence = 1;      // s: no longer is silent in a sequence
constexpr double kCodecFrame = 0.03;      // s: stamps of a lossy codec may be off by one of its frames
constexpr double kFewestCycles = 4;       // that a line goes through
constexpr double kReachOfSamples = 1e-3;  // s

CheckFault Gone(double since) {
    CheckFault fault;
    fault.id = "dropout";
    fault.text = fmt::format("From {:.3f} s on there is no line-up.", since);
    fault.unit = "s";
    return fault;
}

// What stays open then, as a polarity after a codec, stays so in every cycle: the rest counts.
bool IsMeasured(const SoundFindings& findings) {
    const bool isWhole =
        std::ranges::find(findings.notes, "channels-not-heard", &CheckNote::id) == findings.notes.end();
    return findings.verdict != CheckVerdict::CannotTell || isWhole;
}

}  // namespace

SoundWatch::SoundWatch(const FeedFacts& facts, const std::shared_ptr<const Importer>& importer, CheckSettings settings,
                       const WatchListener& listener, WatchReport& report, Alignment& stamps)
    : mFacts(facts),
      mSettings(WithoutTimes(std::move(settings))),
      mChecker(importer),
      mListener(&listener),
      mReport(&report),
      mWindow(facts, kKeptSeconds),
      mLedger(listener, report),
      mAlignment(&stamps) {
    ValidateCheckSettings(mSettings);
}

std::int64_t SoundWatch::Samples(double seconds) const {
    return std::llround(seconds * mFacts.rate);
}

SoundFindings SoundWatch::Check(std::int64_t first, std::int64_t end) const {
    const auto stretch = mWindow.Stretch(first, end);
    return mChecker.Check(*stretch, mSettings, static_cast<double>(first) / mFacts.rate);
}

void SoundWatch::Hear(std::span<const std::vector<float>> inputs, std::size_t count) {
    mWindow.Add(inputs, count);
    if (!mIsFollowing && mWindow.End() >= mNextLook) {
        mNextLook = mWindow.End() + Samples(kLookEvery);
        Look(false);
    }
    while (mIsFollowing && mWindow.End() >= mNext + Samples(mLength)) {
        TakeStretch(false);
    }
}

// At the end of a feed less than a cycle is better than nothing.
void SoundWatch::Look(bool last) {
    const std::int64_t first = std::max(mWindow.First(), mWindow.End() - Samples(kLookLongest));
    if (mWindow.End() == first) {
        return;
    }
    const SoundFindings findings = Check(first, mWindow.End());
    const bool isEnough =
        findings.heard && (findings.heard->isSteady ? findings.heard->endsAt - findings.heard->startsAt >= kToneLooked
                                                    : findings.sound.cycles.value_or(0) >= 1);
    if (findings.heard && (isEnough || last)) {
        Follow(findings);
    }
    if (last) {
        mOpen = findings.notes;
    }
}

// What is found first is what the rest is held against.
void SoundWatch::Follow(const SoundFindings& found) {
    mIsFollowing = true;
    mIsSteady = found.heard->isSteady;
    mReport->expected = found.sound.expected;
    if (mSettings.expect == "auto" && !mSettings.settings) {
        mSettings.expect = found.sound.expected;
    }
    if (mIsSteady && !mSettings.levelDb && !mSettings.settings) {
        for (const ChannelReport& channel : found.sound.channels) {
            if (channel.level) {
                mSettings.levelDb = std::max(*channel.level, mSettings.levelDb.value_or(*channel.level));
            }
        }
    }
    mCycle = mIsSteady ? kToneCycle : found.heard->cycle;
    mLength = std::max(kShortestStretch, kWholeCycle * mCycle);
    mStride = mCycle / std::ceil(mCycle / kLongestStride - kReachOfSamples);
    mAnchor = std::max(found.heard->startsAt, static_cast<double>(mWindow.First()) / mFacts.rate);
    mHeardUntil = mAnchor;
    mNext = Samples(mAnchor);
}

void SoundWatch::TakeStretch(bool last) {
    const std::int64_t end = last ? mWindow.End() : mNext + Samples(mLength);
    const std::int64_t first = last ? std::max(std::min(mNext, end - Samples(mLength)), mWindow.First()) : mNext;
    Judge(Check(first, end), static_cast<double>(first) / mFacts.rate, static_cast<double>(end) / mFacts.rate, last);
    ++mStretches;
    mNext = Samples(mAnchor + static_cast<double>(mStretches) * mStride);
}

void SoundWatch::Judge(const SoundFindings& findings, double start, double end, bool last) {
    const double surely = last ? end : end - kToBeSure;
    TakeMoments(findings, start, surely);
    TakeDamage(surely);
    if (Presence(findings, start, end, last) && IsMeasured(findings)) {
        mWasRight = mWasRight || findings.verdict == CheckVerdict::Right;
        mOpen = findings.notes;
        JudgeStanding(findings, start);
        FollowClock(findings);
        Note(findings, start, end);
    }
    // What changes in a cycle is known once two stretches lie after it.
    if (!last) {
        TellCycles(start - mStride + kReachOfSamples);
    }
}

// Whether the line-up is there all through the stretch. Where it is not, what stands is not judged.
bool SoundWatch::Presence(const SoundFindings& findings, double start, double end, bool last) {
    if (findings.heard) {
        mHeardUntil = std::max(mHeardUntil, findings.heard->endsAt);
    }
    const bool isThere = findings.heard && findings.heard->endsAt > end - kGapOfSequence;
    const bool isThroughout = isThere && findings.heard->startsAt < start + kGapOfSequence;
    if (mIsGone && isThere) {
        mIsGone = false;
        mLedger.End(Gone(0), findings.heard->startsAt);
        LoseCycles();
    } else if (!mIsGone && !isThere && end - mHeardUntil > kGoneAfter && !last) {
        mIsGone = true;
        mLedger.Begin(Gone(mHeardUntil), mHeardUntil);
    }
    return isThroughout;
}

void SoundWatch::JudgeStanding(const SoundFindings& findings, double start) {
    std::vector<CheckFault> standing;
    std::ranges::copy_if(findings.faults, std::back_inserter(standing),
                         [](const CheckFault& fault) { return !fault.at; });
    mLedger.TakeStanding(standing, start,
                         [this](double first, double last, std::span<const int> inputs, std::optional<double> since) {
                             return Locate(first, last, inputs, since);
                         });
}

// Those at the start of a stretch are the stretches' before it, but for the first.
void SoundWatch::TakeMoments(const SoundFindings& findings, double start, double surely) {
    std::vector<CheckFault> moments;
    for (const CheckFault& fault : findings.faults) {
        const double lasts = fault.unit == "s" ? fault.measured.value_or(0) : 0;
        if (fault.at && *fault.at >= (mStretches == 0 ? 0 : start + kReachOfSamples) && *fault.at + lasts <= surely) {
            moments.push_back(fault);
        }
    }
    mLedger.TakeMoments(moments);
}

void SoundWatch::AddDamage(const DamagedStretch& damage) {
    constexpr std::size_t kMostWaiting = 1000;
    const bool isCodecs = mFacts.lossy.value_or(false) && damage.count > 0 && damage.count < Samples(kCodecFrame);
    if (!isCodecs && mDamage.size() < kMostWaiting) {
        mDamage.push_back(damage);
    }
}

void SoundWatch::TakeDamage(double before) {
    while (!mDamage.empty() && static_cast<double>(mDamage.front().position) / mFacts.rate < before) {
        const DamagedStretch damage = mDamage.front();
        mDamage.pop_front();
        CheckFault fault;
        fault.id = "dropout";
        fault.at = static_cast<double>(damage.position) / mFacts.rate;
        fault.unit = "s";
        if (damage.count > 0) {
            fault.measured = static_cast<double>(damage.count) / mFacts.rate;
        }
        fault.text = fmt::format("At {:.3f} s the feed is damaged: {}.", *fault.at, damage.reason);
        mLedger.TakeMoments(std::span(&fault, 1));
    }
}

void SoundWatch::LoseCycles() {
    mFirstCycle.reset();
    mCycles = LineFit();
}

// By how far the beginnings of cycles lie apart: the further, the finer.
void SoundWatch::FollowClock(const SoundFindings& findings) {
    const bool isInterrupted =
        std::ranges::any_of(findings.faults, [](const CheckFault& fault) { return fault.id.starts_with("samples-"); });
    if (isInterrupted) {
        LoseCycles();
    }
    const HeardLineup& heard = *findings.heard;
    if (!mIsSteady) {
        mAlignment->HearSequence(heard);
        mReport->alignment = mAlignment->Now();
    }
    if (!findings.sound.speed || isInterrupted) {
        return;
    }
    WatchedClocks& clocks = mReport->clocks;
    clocks.soundPpm = findings.sound.speed->ppm;
    clocks.unsteadyPpm = heard.unsteady * 1e6;
    if (mIsSteady) {
        return;
    }
    mFirstCycle = mFirstCycle.value_or(heard.cycleStart);
    const double cycles = std::round((heard.cycleStart - *mFirstCycle) / heard.cycle);
    mCycles.Add(cycles, heard.cycleStart - *mFirstCycle);
    if (cycles > 0) {
        clocks.soundPpm = (cycles * heard.sentCycle / (heard.cycleStart - *mFirstCycle) - 1) * 1e6;
    }
    if (mCycles.Count() >= kFewestCycles) {
        clocks.jitterUs = mCycles.Residue() * 1e6;
    }
}

// What a stretch says of the cycles that lie within it.
void SoundWatch::Note(const SoundFindings& findings, double start, double end) {
    auto number = static_cast<std::int64_t>(std::ceil((start - mAnchor - kReachOfSamples) / mCycle));
    for (; mAnchor + static_cast<double>(number + 1) * mCycle <= end + kReachOfSamples; ++number) {
        Figures& figures = mFigures[number];
        figures.isRight = figures.isRight || findings.verdict == CheckVerdict::Right;
        for (const ChannelReport& channel : findings.sound.channels) {
            if (channel.gain) {
                figures.leastGain = std::min(figures.leastGain.value_or(*channel.gain), *channel.gain);
                figures.mostGain = std::max(figures.mostGain.value_or(*channel.gain), *channel.gain);
            }
        }
        figures.clocks = mReport->clocks;
    }
}

// What happened at one place, or for a while, is not as it was a cycle before, and is not as it is a cycle after. After
// a jump of time nothing is for a cycle.
std::vector<DamagedStretch> SoundWatch::Disturbed() const {
    constexpr double kAround = 0.02;  // s
    std::vector<DamagedStretch> stretches;
    for (const WatchedFault& fault : mLedger.Recent()) {
        const bool isJump = fault.fault.id.starts_with("samples-");
        if (!isJump && fault.fault.id != "dropout" && fault.fault.id != "click") {
            continue;
        }
        const std::int64_t first = Samples(fault.begins - kAround);
        const std::int64_t count = Samples(fault.ends.value_or(fault.begins) + kAround) - first;
        stretches.push_back({.position = first, .count = isJump ? Samples(mCycle) : count, .reason = {}});
        stretches.push_back({.position = first + Samples(mCycle), .count = count, .reason = {}});
    }
    return stretches;
}

// Each cycle is as the one before it but for where something begins, where it ends, and a cycle after both.
double SoundWatch::Locate(double first, double last, std::span<const int> inputs, std::optional<double> since) const {
    if (mIsSteady) {
        return last;
    }
    SoundWindow::Comparison comparison{.first = Samples(first),
                                       .end = Samples(last + mLength),
                                       .period = Samples(mCycle),
                                       .inputs = inputs,
                                       .passedOver = Disturbed()};
    if (since) {
        SoundWindow::Comparison firstCycle = comparison;
        const std::int64_t again = Samples(*since) + firstCycle.period;
        firstCycle.end = std::min(again, firstCycle.end);
        if (const auto ended = mWindow.LastChange(firstCycle)) {
            return static_cast<double>(*ended) / mFacts.rate;
        }
        comparison.first = std::max(comparison.first, again);
    }
    const auto changed = mWindow.FirstChange(comparison);
    return changed ? static_cast<double>(*changed) / mFacts.rate : last;
}

void SoundWatch::TellCycles(double before) {
    while (mAnchor + static_cast<double>(mReport->cycles + 1) * mCycle <= before) {
        const std::int64_t number = mReport->cycles++;
        WatchedCycle cycle;
        cycle.number = number + 1;
        cycle.start = mAnchor + static_cast<double>(number) * mCycle;
        cycle.end = cycle.start + mCycle;
        cycle.faults = mLedger.IdsWithin(cycle.start, cycle.end);
        cycle.alignment = mAlignment->Now();
        if (mAdd) {
            mAdd(cycle);
        }
        const Figures figures = mFigures[number];
        mFigures.erase(number);
        cycle.verdict = !cycle.faults.empty() ? CheckVerdict::Faults
                        : figures.isRight     ? CheckVerdict::Right
                                              : CheckVerdict::CannotTell;
        cycle.leastGain = figures.leastGain;
        cycle.mostGain = figures.mostGain;
        cycle.clocks = figures.clocks;
        cycle.clocks.senderPpm = mClock.SenderPpm();
        cycle.clocks.arrivalMs = mClock.TakeSpreadMs();
        if (cycle.clocks.arrivalMs) {
            mReport->clocks.arrivalMs = std::max(*cycle.clocks.arrivalMs, mReport->clocks.arrivalMs.value_or(0));
        }
        mReport->rightCycles += cycle.verdict == CheckVerdict::Right ? 1 : 0;
        mLedger.Forget(cycle.start - kKeptSeconds);
        if (mListener->onCycle) {
            mListener->onCycle(cycle);
        }
    }
}

void SoundWatch::Finish() {
    if (!mIsFollowing) {
        Look(true);
    }
    if (mIsFollowing) {
        TakeStretch(true);
        mLedger.Finish();
        TellCycles(Seconds() + kReachOfSamples);
    }
    if (!mWasRight) {
        mReport->notes.insert(mReport->notes.end(), mOpen.begin(), mOpen.end());
    }
    mReport->seconds = Seconds();
    mReport->clocks.senderPpm = mClock.SenderPpm();
    mReport->verdict = !mReport->faults.empty() ? CheckVerdict::Faults
                       : mWasRight              ? CheckVerdict::Right
                                                : CheckVerdict::CannotTell;
}

}  // namespace parts

}  // namespace lineup
