#pragma once

#include <lineup/Api.h>
#include "Host/Lineup/Check/Watch/LineFit.h"

#include <optional>

namespace lineup {

inline namespace parts {

/// The sender's clock, by the time stamps of what arrives, against this machine's. The first second is left out, in
/// which what was held back comes all at once. Memory does not grow.
class LINEUP_API FeedClock {
public:
    /// What is stamped `stamp` s by the sender's clock has arrived at `arrived` s of this machine's.
    void Add(double stamp, double arrived);

    /// By how much the sender's clock is too fast, in millionths: a line through what came with the least delay in each
    /// second. Empty until it is known to kDoubtPpm.
    [[nodiscard]] std::optional<double> SenderPpm() const;
    static constexpr double kDoubtPpm = 20;

    /// What the longest delay was over the shortest, in ms, since it was asked for the last time.
    [[nodiscard]] std::optional<double> TakeSpreadMs();

private:
    void CloseSecond();

    std::optional<double> mFirst;  // arrival
    double mLastStamp = 0;
    double mSecondEnds = 0;
    std::optional<double> mLeast;  // delay of the second that goes on
    std::optional<double> mShortest;
    double mLongest = 0;
    LineFit mSeconds;  // their least delays over time
};

}  // namespace parts

}  // namespace lineup
