#pragma once

#include <lineup/Clip.h>
#include <lineup/SendSettings.h>
#include "Host/Lineup/Send/SendPlan.h"
#include "Host/Lineup/Send/Sound/CodedSound.h"
#include "Host/Lineup/Send/Transport/Multiplexer.h"

#include <optional>

namespace lineup {
inline namespace parts {

/// A clip's transport stream as settings ask for it, ready to be made slot by slot.
class LINEUP_API StreamMaker {
public:
    /// Encodes the picture. Throws UsageError for settings that cannot be.
    StreamMaker(const Clip& clip, const SendSettings& settings);
    StreamMaker(const StreamMaker&) = delete;
    StreamMaker& operator=(const StreamMaker&) = delete;
    ~StreamMaker() = default;

    [[nodiscard]] const StreamTimes& Times() const noexcept { return *mTimes; }
    [[nodiscard]] Multiplexer& Mux() noexcept { return *mMux; }

    /// Whether the sound is coded once.
    [[nodiscard]] bool KeepsSound() const noexcept { return mSound && mSound->Keeps(); }

private:
    void OpenSound(const Clip& clip);
    void OpenPicture(const Clip& clip);
    void ChooseRate(const SendSettings& settings);

    SendPlan mPlan;
    std::optional<CodedSound> mSound;
    std::optional<SoundLane> mSoundLane;
    std::optional<PictureLane> mPictureLane;
    std::optional<StreamTimes> mTimes;
    std::optional<Multiplexer> mMux;
};

}  // namespace parts
}  // namespace lineup
