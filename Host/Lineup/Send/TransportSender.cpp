#include "Host/Lineup/Send/Clocks.h"
#include "Host/Lineup/Send/Datagrams.h"
#include "Host/Lineup/Send/Output/StreamOutput.h"
#include "Host/Lineup/Send/Pacer.h"
#include "Host/Lineup/Send/Senders.h"
#include "Host/Lineup/Send/SlotQueue.h"
#include "Host/Lineup/Send/StreamMaker.h"

#include <memory>
#include <optional>

namespace lineup {

namespace {

constexpr std::int64_t kNsEachSecond = 1'000'000'000;

/// One stream on its way.
class TransportSender {
public:
    TransportSender(const Clip& clip, const SendSettings& settings)
        : mSettings(&settings),
          mRate(static_cast<int>(clip.SampleRate())),
          mMaker(clip, settings),
          mOwnClock(settings.clock == nullptr ? MakeClock(settings.timing) : nullptr),
          mClock(settings.clock == nullptr ? mOwnClock.get() : settings.clock),
          mOutput(OpenOutput(settings, RtpPayload::TransportStream)) {
        mStatus.bitsPerSecond = Times().BitsPerSecond();
        mStatus.delayMs = static_cast<double>(Times().BeginDown(mMaker.Mux().DelaySlots(), kNsEachSecond)) / 1e6;
    }

    SendStatus Run(const SendProgress& progress) {
        std::int64_t slot = FirstSlot();
        PlanEnd(slot);
        Pacer pacer(*mClock, IsWall() ? std::optional<std::int64_t>(0) : std::nullopt);
        Datagrams datagrams(pacer, *mOutput, Times());
        while (SendFrom(slot, datagrams, progress)) {
            slot = FirstSlot();
        }
        return mStatus;
    }

private:
    [[nodiscard]] const StreamTimes& Times() const { return mMaker.Times(); }
    [[nodiscard]] bool IsWall() const { return mSettings->timing == SendTiming::Wall; }

    // By the system's clock a stream begins with the next slot but one, once all that it needs has been in use.
    std::int64_t FirstSlot() {
        if (!IsWall()) {
            return Times().SlotAt(mSettings->startSample, mRate);
        }
        std::vector<std::uint8_t> unused;
        mMaker.Mux().AppendSlot(Times().SlotAt(mClock->NowNs(), kNsEachSecond), unused);
        return Times().SlotAt(mClock->NowNs(), kNsEachSecond) + 2;
    }

    void PlanEnd(std::int64_t slot) {
        std::int64_t first = mSettings->startSample;
        if (IsWall()) {
            first = Times().BeginDown(slot, mRate);
        } else {
            mMaker.Mux().BeginAt(first, mRate);
        }
        if (mSettings->samples) {
            mMaker.Mux().EndAt(first + *mSettings->samples, mRate);
            mEnd = Times().SlotAt(first + *mSettings->samples - 1, mRate) + 1 + mMaker.Mux().DelaySlots();
        }
    }

    // Sends from `slot` on, and moves it on. True when the clock that tells clip time has leapt; else all is sent, or
    // progress wants no more.
    bool SendFrom(std::int64_t& slot, Datagrams& datagrams, const SendProgress& progress) {
        SlotQueue slots(
            [this](std::int64_t number, std::vector<std::uint8_t>& bytes) { mMaker.Mux().AppendSlot(number, bytes); },
            slot);
        std::vector<std::uint8_t> bytes;
        for (; !mEnd || slot < *mEnd; ++slot) {
            slots.Take(bytes);
            const bool sent = datagrams.Send(Times().PacketsBefore(slot), bytes, mStatus);
            SayOfJumps();
            if (!sent) {
                return true;
            }
            mStatus.seconds = Seconds(++mSentSlots);
            mStatus.clipSeconds = Seconds(slot + 1);
            if (progress && !progress(mStatus)) {
                return false;
            }
        }
        return !datagrams.Flush(mStatus);
    }

    [[nodiscard]] double Seconds(std::int64_t slots) const {
        return static_cast<double>(Times().BeginDown(slots, kNsEachSecond)) / 1e9;
    }

    void SayOfJumps() {
        if (mStatus.jumps != mSaidJumps && mSettings->notice) {
            mSettings->notice("the clock has leapt, or this machine stood still; sending goes on");
        }
        mSaidJumps = mStatus.jumps;
    }

    const SendSettings* mSettings;
    int mRate;
    StreamMaker mMaker;
    std::unique_ptr<SendClock> mOwnClock;
    SendClock* mClock;
    std::unique_ptr<StreamOutput> mOutput;
    std::optional<std::int64_t> mEnd;  // the slot that is not sent any more
    std::int64_t mSentSlots = 0;
    SendStatus mStatus;
    std::int64_t mSaidJumps = 0;
};

}  // namespace

SendStatus SendTransportStream(const Clip& clip, const SendSettings& settings, const SendProgress& progress) {
    return TransportSender(clip, settings).Run(progress);
}

}  // namespace lineup
