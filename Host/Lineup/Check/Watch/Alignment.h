#pragma once

#include <lineup/Api.h>
#include <lineup/Watch.h>
#include "Host/Lineup/Check/Sound/Decide/SoundFindings.h"

#include <cstdint>
#include <deque>
#include <optional>

namespace lineup {

inline namespace parts {

/// How the sound of a feed lies against the time stamps of its sound and of its pictures. A card does not move: when a
/// picture was made is known by its stamp alone, and of that where in a frame. So what is sent with whole frames a
/// cycle tells the sound's place against the pictures to half a frame, and its movement for as long as it is watched.
class LINEUP_API Alignment {
public:
    /// A sample that stands at this second of the feed is stamped `stamp` s.
    void HearStamp(double second, double stamp);

    /// A picture is stamped `stamp` s, of `frameRate` frames a second; 0 where that is not known.
    void SeePicture(double stamp, double frameRate);

    /// A sequence was heard.
    void HearSequence(const HeardLineup& heard);

    [[nodiscard]] WatchedAlignment Now() const;

    /// The stamp of what stands at this second of the feed, and the other way round; without stamps both are the same.
    [[nodiscard]] double StampAt(double second) const;
    [[nodiscard]] double SecondAt(double stamp) const;

private:
    // Of about a second of samples.
    struct Offset {
        double first = 0;  // s
        double sum = 0;    // of where they stand, less their stamps
        double count = 0;
    };

    std::deque<Offset> mOffsets;
    std::optional<double> mFirstPicture;
    double mPicture = 0;
    double mFrameRate = 0;
    std::optional<double> mFirstCycle;  // stamps
    double mCycle = 0;
    double mSentCycle = 0;
};

}  // namespace parts

}  // namespace lineup
