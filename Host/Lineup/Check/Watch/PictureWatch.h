#pragma once

#include <lineup/Api.h>
#include <lineup/Clip.h>
#include <lineup/Watch.h>
#include "Host/Lineup/Check/Picture/CheckPicture.h"
#include "Host/Lineup/Check/Picture/FrameSeries.h"
#include "Host/Lineup/Check/Reader/DecodedPicture.h"
#include "Host/Lineup/Check/Watch/Alignment.h"
#include "Host/Lineup/Check/Watch/FaultLedger.h"

#include <deque>
#include <memory>
#include <optional>
#include <vector>

namespace lineup {

inline namespace parts {

/// Checks the pictures of a feed as they come: the check of recordings, made of the pictures of some seconds, then of
/// those of the next. A picture that differs from those before it is the first of a stretch of its own; if the others
/// come back before the stretch is long enough, it is told as what happened at one place. Memory is the same however
/// long the feed is.
class LINEUP_API PictureWatch : public PictureListener {
public:
    static constexpr double kStretch = 3;      ///< s of pictures that are judged together
    static constexpr double kCycle = 4;        ///< s, of a feed without sound
    static constexpr double kNoPictures = 15;  ///< s without a picture, after which there is no card

    /// Tells `listener`, and writes what there was into `report`; these and `alignment`, which says where in the feed
    /// a picture stands, must outlive it. `settings.fromSeconds` does not count: pictures before second 0 are passed
    /// over. Throws what the plug-in throws.
    PictureWatch(const std::shared_ptr<const Importer>& importer, const CheckSettings& settings,
                 const WatchListener& listener, WatchReport& report, Alignment& alignment);

    void OnFacts(const decoding::Picture& facts) override { mExaminer.OnFacts(mFacts = facts); }
    bool OnPicture(const DecodedPicture& picture) override;
    void OnEnd(const decoding::PictureEnd& /*end*/) override {}

    /// The feed has gone on to this second, whether with pictures or without.
    void GoOnTo(double second);

    /// Adds what the pictures say of a cycle of the sound.
    void AddTo(WatchedCycle& cycle) const;

    /// Tells cycles, in place of a sound that has them.
    void TellCycles() { mTellsCycles = true; }

    /// The feed has ended.
    void Finish();

    /// Whether there was a card with nothing wrong.
    [[nodiscard]] bool WasRight() const { return mWasRight; }

    /// Where the last picture ends.
    [[nodiscard]] double Seconds() const { return mSeconds; }

private:
    // Pictures that are alike, and what was there before they were.
    struct Stretch {
        double begins = 0;   // s
        double settled = 0;  // s, from where on they are alike
        picture::FrameSeries alike;
        bool isOther = false;  // than what was judged last
        int frames = 0;
        int black = 0;
        int damaged = 0;
    };
    struct Judged {
        double begins = 0;
        double ends = 0;
        bool hasCard = false;
        bool isRight = false;

        [[nodiscard]] bool Overlaps(const WatchedCycle& cycle) const {
            return begins < cycle.end && ends > cycle.start;
        }
    };

    void Take(const DecodedPicture& picture);
    void Begin(const DecodedPicture& picture, bool isOther);
    void Settle(const DecodedPicture& picture);
    void Judge(double end);
    void TellReturn(double end);
    void TellCyclesBefore(double second);

    Clip mClip;
    CheckSettings mSettings;
    std::optional<double> mFor;
    const WatchListener* mListener;
    WatchReport* mReport;
    Alignment* mAlignment;
    FaultLedger mLedger;
    picture::PictureExaminer mExaminer;
    decoding::Picture mFacts{};
    DecodedPicture mPicture;
    picture::FrameSeries mKnown;  // what was judged last
    std::optional<Stretch> mStretch;
    std::optional<double> mFirst;
    double mSeconds = 0;
    bool mTellsCycles = false;
    bool mIsCardThere = false;
    bool mWasRight = false;
    std::deque<Judged> mJudged;  // the last ones
    std::vector<CheckNote> mNotes;
};

}  // namespace parts

}  // namespace lineup
