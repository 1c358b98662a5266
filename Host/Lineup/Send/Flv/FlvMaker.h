#pragma once

#include <lineup/Clip.h>
#include <lineup/SendSettings.h>
#include "Host/Lineup/Send/Flv/AvcUnits.h"
#include "Host/Lineup/Send/SendPlan.h"
#include "Host/Lineup/Send/Sound/CodedSound.h"
#include "Host/Lineup/Send/Transport/StreamTimes.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace lineup {
inline namespace parts {

/// Throws UsageError when the settings' target or codecs are not for FLV.
LINEUP_API void CheckFlv(const SendSettings& settings);

/// A clip as tags of FLV, ready to be made slot by slot: H.264 whose pictures repeat, and AAC. What is sent at a clip
/// time follows from it and from where the groups begin.
class LINEUP_API FlvMaker {
public:
    /// Encodes the picture. Throws UsageError for settings that cannot be.
    FlvMaker(const Clip& clip, const SendSettings& settings);
    FlvMaker(const FlvMaker&) = delete;
    FlvMaker& operator=(const FlvMaker&) = delete;
    ~FlvMaker() = default;

    [[nodiscard]] const StreamTimes& Times() const noexcept { return mTimes; }
    [[nodiscard]] bool HasPicture() const noexcept { return mPlan.picture.has_value(); }

    /// What whoever begins to receive needs before the first tag.
    [[nodiscard]] std::vector<std::uint8_t> Head() const;

    /// The slots from one picture that stands alone to the next.
    [[nodiscard]] std::int64_t GroupSlots() const noexcept;

    /// Groups of pictures begin with slot `slot`, the first of a picture; else with slot 0.
    void BeginGroupAt(std::int64_t slot) noexcept { mGroupBegin = slot; }

    /// Sound before this sample, and what begins at `end` or later, is left out.
    void BeginAt(std::int64_t sample) noexcept { mBegin = sample; }
    void EndAt(std::int64_t sample) noexcept { mEnd = sample; }

    /// Puts the tags of a slot behind `bytes`, each with the time at which it is to leave.
    void AppendSlot(std::int64_t slot, std::vector<std::uint8_t>& bytes);

private:
    void AppendPictureOf(std::int64_t slot, std::vector<std::uint8_t>& bytes) const;
    void AppendSoundOf(std::int64_t slot, std::vector<std::uint8_t>& bytes);
    [[nodiscard]] std::int64_t FirstFrameOf(std::int64_t slot) const;
    [[nodiscard]] bool IsLeftOut(std::int64_t sample) const;

    SendPlan mPlan;
    StreamTimes mTimes;
    int mRate;
    AvcGroup mGroup;
    std::vector<std::uint8_t> mSoundConfig;
    std::optional<CodedSound> mSound;
    std::int64_t mGroupBegin = 0;
    std::optional<std::int64_t> mBegin;
    std::optional<std::int64_t> mEnd;
};

}  // namespace parts
}  // namespace lineup
