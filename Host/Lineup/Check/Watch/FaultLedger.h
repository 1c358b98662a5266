#pragma once

#include <lineup/Watch.h>

#include <deque>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace lineup {

/// The faults of a feed: those that stand from where they begin to where they end, and those of one place. Each is told
/// once. Memory does not grow with the feed.
class FaultLedger {
public:
    /// Where what stands at the fault's inputs has changed, between stretches that begin at `first` and at `last`; it
    /// ends there if it began at `since`, and else begins.
    using Locate =
        std::function<double(double first, double last, std::span<const int> inputs, std::optional<double> since)>;

    /// How often running a fault must be there to count, and be missed to have ended. Where stretches overlap, it is
    /// twice: one in which something changes tells neither as it was before nor as it is after.
    enum class Counting : int { Once = 1, Twice = 2 };

    /// Tells `listener`, and keeps what there was in `report`; both must outlive it.
    FaultLedger(const WatchListener& listener, WatchReport& report, Counting counting = Counting::Twice)
        : mListener(&listener), mReport(&report), mTimes(static_cast<int>(counting)) {}

    /// Takes what stands in a stretch that begins at `start`.
    void TakeStanding(const std::vector<CheckFault>& faults, double start, const Locate& locate);

    /// Nothing more comes: what has been there once counts.
    void Finish();

    void Begin(const CheckFault& fault, double at);
    void End(const CheckFault& fault, double at);

    /// Takes faults of one place, `fault.at`, those that have not been told before.
    void TakeMoments(std::span<const CheckFault> faults);

    /// Those that are kept and have ended, by when they were told.
    [[nodiscard]] const std::deque<WatchedFault>& Recent() const noexcept { return mRecent; }

    /// The ids of all that stood or happened in [start, end), each once.
    [[nodiscard]] std::vector<std::string> IdsWithin(double start, double end) const;

    /// Nobody asks for what lies before any longer.
    void Forget(double before);

private:
    struct Standing {
        CheckFault fault;
        double begins = 0;
        double ends = 0;  ///< where it would, if it is missed once more
        int seen = 0;
        int missed = 0;
        bool isTold = false;
    };

    [[nodiscard]] int NeededOf(const CheckFault& fault) const;
    void Tell(Standing& standing);
    void Keep(const WatchedFault& fault);
    [[nodiscard]] bool IsKnown(const CheckFault& moment) const;
    [[nodiscard]] Standing* Find(const CheckFault& fault);

    const WatchListener* mListener;
    WatchReport* mReport;
    int mTimes;
    std::vector<Standing> mStanding;
    std::deque<WatchedFault> mRecent;  // that have ended
    double mLastStart = 0;
    bool mHasStarted = false;
};

}  // namespace lineup
