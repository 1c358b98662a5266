#pragma once

#include <lineup/Api.h>

#include <optional>
#include <vector>

namespace lineup {

inline namespace parts {

/// The sender's clock, by the time stamps of what arrives, against this machine's. The first second is left out, in
/// which what was held back comes all at once. Memory does not grow.
class LINEUP_API FeedClock {
public:
    /// What is stamped `stamp` s by the sender's clock has arrived at `arrived` s of this machine's.
    void Add(double stamp, double arrived);

    /// By how much the sender's clock is too fast, in millionths: a line through what came with the least delay in each
    /// second, later in each stretch of as many seconds as memory allows. Stretches in which all came late, as on a
    /// busy machine, count for nothing. Empty until it is known to kDoubtPpm.
    [[nodiscard]] std::optional<double> SenderPpm() const;
    static constexpr double kDoubtPpm = 20;

    /// What the longest delay was over the shortest, in ms, since it was asked for the last time.
    [[nodiscard]] std::optional<double> TakeSpreadMs();

private:
    struct Arrival {
        double at = 0;
        double delay = 0;
    };

    void CloseStretch();

    std::optional<double> mFirst;  // arrival
    double mLastStamp = 0;
    double mSeconds = 1;  // of a stretch
    double mStretchEnds = 0;
    std::optional<Arrival> mLeast;  // of the stretch that goes on
    std::optional<double> mShortest;
    double mLongest = 0;
    std::vector<Arrival> mArrivals;  // the least delayed of each stretch
};

}  // namespace parts

}  // namespace lineup
