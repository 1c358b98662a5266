#pragma once

#include <lineup/Api.h>
#include <lineup/Watch.h>
#include "Host/Lineup/Check/Sound/CheckSound.h"
#include "Host/Lineup/Check/Watch/Alignment.h"
#include "Host/Lineup/Check/Watch/FaultLedger.h"
#include "Host/Lineup/Check/Watch/FeedClock.h"
#include "Host/Lineup/Check/Watch/LineFit.h"
#include "Host/Lineup/Check/Watch/SoundWindow.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace lineup {

inline namespace parts {

/// Checks the sound of a feed as it comes. The check of recordings is made of a stretch of somewhat more than a cycle,
/// then of one some seconds later, and so on: what holds in two of them running stands, and what happens at one
/// place is told when a stretch has it with enough after it. Memory is the same however long the feed is.
class LINEUP_API SoundWatch {
public:
    /// Tells `listener`, writes what there was into `report`, and holds the sound against `stamps`; all must outlive
    /// it. `settings.fromSeconds` and `forSeconds` do not count. Throws UsageError as ValidateCheckSettings does, and
    /// what the plug-in throws.
    SoundWatch(const FeedFacts& facts, const std::shared_ptr<const Importer>& importer, CheckSettings settings,
               const WatchListener& listener, WatchReport& report, Alignment& stamps);

    /// Takes the first `count` samples of each input.
    void Hear(std::span<const std::vector<float>> inputs, std::size_t count);

    /// Takes what could not be read; what was heard of it says more.
    void AddDamage(const DamagedStretch& damage);

    /// What is stamped `stamp` s by the sender's clock has arrived at `arrived` s of this machine's.
    void Arrives(double stamp, double arrived) { mClock.Add(stamp, arrived); }

    /// The feed has ended.
    void Finish();

    /// Adds to each cycle before it is told what else is known of it.
    void AddToCycles(std::function<void(WatchedCycle&)> add) { mAdd = std::move(add); }

    [[nodiscard]] double Seconds() const { return static_cast<double>(mWindow.End()) / mFacts.rate; }

private:
    // What stretches that hold a cycle say of it.
    struct Figures {
        bool isRight = false;
        std::optional<double> leastGain;
        std::optional<double> mostGain;
        WatchedClocks clocks;
    };

    [[nodiscard]] SoundFindings Check(std::int64_t first, std::int64_t end) const;
    [[nodiscard]] std::int64_t Samples(double seconds) const;
    void Look(bool last);
    void Follow(const SoundFindings& found);
    void TakeStretch(bool last);
    void Judge(const SoundFindings& findings, double start, double end, bool last);
    void JudgeStanding(const SoundFindings& findings, double start);
    void TakeMoments(const SoundFindings& findings, double start, double surely);
    void TakeDamage(double before);
    [[nodiscard]] bool Presence(const SoundFindings& findings, double start, double end, bool last);
    void FollowClock(const SoundFindings& findings);
    void LoseCycles();
    void Note(const SoundFindings& findings, double start, double end);
    void TellCycles(double before);
    [[nodiscard]] std::vector<DamagedStretch> Disturbed() const;
    [[nodiscard]] double Locate(double first, double last, std::span<const int> inputs,
                                std::optional<double> since) const;

    FeedFacts mFacts;
    CheckSettings mSettings;
    SoundChecker mChecker;
    const WatchListener* mListener;
    WatchReport* mReport;
    SoundWindow mWindow;
    FaultLedger mLedger;
    FeedClock mClock;
    Alignment* mAlignment;
    std::function<void(WatchedCycle&)> mAdd;
    std::int64_t mNextLook = 0;

    bool mIsFollowing = false;
    bool mIsSteady = false;
    double mCycle = 0;   // s
    double mLength = 0;  // of a stretch
    double mStride = 0;
    double mAnchor = 0;  // where the first cycle begins
    std::int64_t mNext = 0;
    std::int64_t mStretches = 0;
    bool mIsGone = false;
    bool mWasRight = false;
    std::vector<CheckNote> mOpen;  // what the latest stretch left open
    double mHeardUntil = 0;
    std::optional<double> mFirstCycle;         // since the last interruption: where a cycle begins by phase
    LineFit mCycles;                           // since then: where they begin, over their number
    std::map<std::int64_t, Figures> mFigures;  // of cycles that have not been told
    std::deque<DamagedStretch> mDamage;
};

}  // namespace parts

}  // namespace lineup
