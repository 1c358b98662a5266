#pragma once

#include "Host/Lineup/Check/Sound/Events/Across.h"
#include "Host/Lineup/Check/Sound/Follow/Due.h"
#include "Host/Lineup/Check/Sound/Follow/Lineup.h"
#include "Host/Lineup/Check/Sound/Follow/Presence.h"
#include "Host/Lineup/Check/Sound/Measure/SlotSound.h"
#include "Host/Lineup/Check/Sound/Signal/History.h"

#include <optional>
#include <vector>

namespace lineup::sound {

/// Follows a line-up slot by slot from where the history has its start to where it ends, and adds up what it finds.
class Follower {
public:
    /// The history and the reference must outlive it.
    Follower(const History& history, const Reference& reference, const Survey& survey);

    /// Takes what has come into the history; at the end of the recording, `last`, what is left of a slot too.
    void Advance(bool last);

    /// The line-up has ended before the recording.
    [[nodiscard]] bool Ended() const { return mEnded; }

    [[nodiscard]] const Lineup& Found() const { return mLineup; }

private:
    void Take(const SlotNumber& number);
    [[nodiscard]] bool GoesOnAfter(SlotNumber number);
    void Begin(const Presence& presence, const SlotSound& sound);
    [[nodiscard]] std::vector<SoundEvent> EventsOf(SlotSound& sound);
    void Measure(const SlotSound& sound);
    void MeasureInput(const SlotSound& sound, std::size_t input);
    void MeasureHops(const SlotSound& sound, std::size_t input, bool isFull, std::vector<double>& high);
    void AddTops(const SlotSound& sound, std::size_t input);
    void AddLevels(const SlotSound& sound, std::size_t input, std::size_t tone);
    [[nodiscard]] double SentAt(std::size_t slot, std::size_t tone, std::size_t input) const;
    void FollowTime(const SlotSound& sound);
    void Keep(const SoundEvent& event);
    [[nodiscard]] bool TakeJump(SoundEvent& event, SlotSound& sound);

    const History* mHistory;
    const Reference* mReference;
    DueTones mDue;
    SlotMeter mMeter;
    Across mAcross;
    Placing mPlacing;  // the survey's, and what time has shifted since
    std::vector<double> mDelays;
    SlotNumber mNext;
    bool mStarted = false;
    bool mEnded = false;
    double mLastPresent = 0;
    std::size_t mMeasured = 0;        // slots
    std::vector<SlotNumber> mSilent;  // slots without a tone since the last one with some
    Lineup mLineup;
};

}  // namespace lineup::sound
