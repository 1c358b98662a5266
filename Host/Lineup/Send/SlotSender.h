#pragma once

#include <lineup/Clip.h>
#include <lineup/Send.h>
#include "Host/Lineup/Send/Pacer.h"
#include "Host/Lineup/Send/Transport/StreamTimes.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace lineup {

/// One stream on its way that is made in slots. What it is made of, and how a slot is sent, is the format's.
class SlotSender {
public:
    SlotSender(const Clip& clip, const SendSettings& settings);
    virtual ~SlotSender();
    SlotSender(const SlotSender&) = delete;
    SlotSender& operator=(const SlotSender&) = delete;

    SendStatus Run(const SendProgress& progress);

protected:
    [[nodiscard]] int Rate() const noexcept { return mRate; }
    [[nodiscard]] Pacer& Pace() noexcept { return mPacer; }
    [[nodiscard]] SendStatus& Status() noexcept { return mStatus; }

    /// Of so many slots.
    [[nodiscard]] double Seconds(std::int64_t slots) const;

private:
    [[nodiscard]] virtual const StreamTimes& Times() const = 0;
    virtual void MakeSlot(std::int64_t slot, std::vector<std::uint8_t>& bytes) = 0;

    /// The first slot from `slot` on that a stream may begin with.
    [[nodiscard]] virtual std::int64_t EntryFrom(std::int64_t slot) const { return slot; }

    /// The stream begins with this sample, in this slot.
    virtual void BeginAt(std::int64_t sample, std::int64_t slot) = 0;

    /// It ends before this sample. Gives how many slots later what there is of it is sent.
    virtual std::int64_t EndAt(std::int64_t sample) = 0;

    /// False when the clock that tells clip time has leapt.
    virtual bool SendSlot(std::int64_t slot, std::span<const std::uint8_t> bytes) = 0;

    /// Sends what waits for more. False as above.
    virtual bool SendRest() { return true; }

    [[nodiscard]] bool IsWall() const { return mSettings->timing == SendTiming::Wall; }
    [[nodiscard]] std::int64_t FirstSlot();
    void PlanEnd(std::int64_t slot);
    bool SendFrom(std::int64_t& slot, const SendProgress& progress);
    void SayOfJumps();

    const SendSettings* mSettings;
    int mRate;
    std::unique_ptr<SendClock> mOwnClock;
    SendClock* mClock;
    Pacer mPacer;
    std::optional<std::int64_t> mEnd;  // the slot that is not sent any more
    std::int64_t mSentSlots = 0;
    SendStatus mStatus;
    std::int64_t mSaidJumps = 0;
};

}  // namespace lineup
