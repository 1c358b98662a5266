#pragma once

#include <lineup/Api.h>
#include "Host/Lineup/Check/Sound/Find/ToneRuns.h"
#include "Host/Lineup/Check/Sound/Follow/Follower.h"
#include "Host/Lineup/Check/Sound/Follow/Lanes.h"
#include "Host/Lineup/Check/Sound/Follow/Steady.h"
#include "Host/Lineup/Check/Sound/Signal/FrontEnd.h"
#include "Host/Lineup/Check/Sound/Signal/History.h"

#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace lineup::sound {

/// Hears a recording from its start to its end: searches for a line-up, and follows it once it is found.
class LINEUP_API Listener {
public:
    /// The references must outlive it; the plug-in is asked for a steady tone's.
    Listener(int inputs, const Grid& grid, std::span<const Reference> references, Expectation expected,
             std::shared_ptr<const Importer> importer, bool lossy);

    /// Takes whole hops of all inputs, but for the last call.
    void Hear(std::span<const std::span<float>> samples);

    /// The recording has ended.
    void Finish();

    /// What was found, if a line-up was: a sequence goes before a steady tone.
    [[nodiscard]] const Lineup* Found() const;

    [[nodiscard]] const Lanes& Drawing() const { return mLanes; }

private:
    void Search(bool last);
    void SearchIdent(std::span<const ToneRun> runs, bool last);
    void SearchTone(std::span<const ToneRun> runs, bool last);

    std::span<const Reference> mReferences;
    Expectation mExpected;
    std::shared_ptr<const Importer> mImporter;
    History mHistory;
    std::vector<InputFrontEnd> mFrontEnds;
    ToneRuns mRuns;
    Lanes mLanes;
    double mNextSearch = 0;
    std::unique_ptr<Follower> mFollower;
    std::unique_ptr<Reference> mVariant;  // of a sequence
    std::unique_ptr<Reference> mTone;
    std::unique_ptr<Follower> mToneFollower;
};

}  // namespace lineup::sound
