#include "Host/Lineup/Send/Clocks.h"
#include "Host/Lineup/Send/Flv/FlvMaker.h"
#include "Host/Lineup/Send/Flv/FlvTags.h"
#include "Host/Lineup/Send/Output/StreamOutput.h"
#include "Host/Lineup/Send/Pacer.h"
#include "Host/Lineup/Send/Senders.h"
#include "Host/Lineup/Send/SlotQueue.h"
#include "Host/Lineup/Send/Transport/WideMath.h"

#include <memory>
#include <optional>

namespace lineup {

namespace {

constexpr std::int64_t kNsInSecond = 1'000'000'000;
constexpr std::int64_t kNsInMs = 1'000'000;
constexpr std::int64_t kMsInSecond = 1000;

/// One stream of FLV on its way; each tag leaves when its time stamp says.
class FlvSender {
public:
    FlvSender(const Clip& clip, const SendSettings& settings)
        : mSettings(&settings),
          mRate(static_cast<int>(clip.SampleRate())),
          mMaker(clip, settings),
          mOwnClock(settings.clock == nullptr ? MakeClock(settings.timing) : nullptr),
          mClock(settings.clock == nullptr ? mOwnClock.get() : settings.clock),
          mOutput(OpenOutput(settings, mMaker.Head())) {}

    SendStatus Run(const SendProgress& progress) {
        std::int64_t slot = FirstSlot();
        PlanEnd(slot);
        Pacer pacer(*mClock, IsWall() ? std::optional<std::int64_t>(0) : std::nullopt);
        while (SendFrom(slot, pacer, progress)) {
            if (mSettings->notice) {
                mSettings->notice("the clock has leapt; sending goes on at its new time");
            }
            slot = FirstSlot();
        }
        return mStatus;
    }

private:
    [[nodiscard]] const StreamTimes& Times() const { return mMaker.Times(); }
    [[nodiscard]] bool IsWall() const { return mSettings->timing == SendTiming::Wall; }

    // The stream begins with a picture that stands alone. By the system's clock that is the next one but a slot, once
    // all that it needs has been in use.
    std::int64_t FirstSlot() {
        if (!IsWall()) {
            return Times().SlotAt(mSettings->startSample, mRate);
        }
        std::vector<std::uint8_t> unused;
        mMaker.AppendSlot(Times().SlotAt(mClock->NowNs(), kNsInSecond), unused);
        return CeilDivided(Times().SlotAt(mClock->NowNs(), kNsInSecond) + 2, mMaker.GroupSlots()) * mMaker.GroupSlots();
    }

    void PlanEnd(std::int64_t slot) {
        std::int64_t first = mSettings->startSample;
        if (IsWall()) {
            first = Times().BeginDown(slot, mRate);
        } else {
            const std::int64_t turn = Times().SlotsPerFrame();
            const std::int64_t whole = CeilDivided(slot, turn) * turn;
            mMaker.BeginGroupAt(Times().BeginUp(whole, mRate) < first ? whole + turn : whole);
            mMaker.BeginAt(first);
        }
        if (mSettings->samples) {
            mMaker.EndAt(first + *mSettings->samples);
            mEnd = Times().SlotAt(first + *mSettings->samples - 1, mRate) + 1;
        }
    }

    // True when the clock that tells clip time has leapt; else all is sent, or progress wants no more.
    bool SendFrom(std::int64_t slot, Pacer& pacer, const SendProgress& progress) {
        SlotQueue slots(
            [this](std::int64_t number, std::vector<std::uint8_t>& bytes) { mMaker.AppendSlot(number, bytes); }, slot);
        std::vector<std::uint8_t> bytes;
        for (; !mEnd || slot < *mEnd; ++slot) {
            slots.Take(bytes);
            for (std::span<const std::uint8_t> rest(bytes); !rest.empty();) {
                const FlvTag tag = FirstFlvTag(rest);
                if (!SendTag(slot, tag, pacer)) {
                    return true;
                }
                rest = rest.subspan(tag.bytes.size());
            }
            mStatus.seconds = Seconds(++mSentSlots);
            mStatus.clipSeconds = Seconds(slot + 1);
            if (progress && !progress(mStatus)) {
                return false;
            }
        }
        return false;
    }

    bool SendTag(std::int64_t slot, const FlvTag& tag, Pacer& pacer) {
        const std::int64_t begin = Times().BeginDown(slot, kMsInSecond);
        const std::int64_t atNs = (begin + Modulo(tag.ms - begin, kFlvWrapMs)) * kNsInMs;
        if (!pacer.Wait(atNs, mLastNs ? atNs - *mLastNs : 0, mStatus)) {
            mLastNs.reset();
            return false;
        }
        mLastNs = atNs;
        const StreamMoment moment = {
            .datagram = mStatus.datagrams, .timestamp = tag.ms, .isEntry = tag.isEntry || !mMaker.HasPicture()};
        if (!mOutput->Write(tag.bytes, moment)) {
            ++mStatus.lostDatagrams;
        }
        ++mStatus.datagrams;
        mStatus.bytes += static_cast<std::int64_t>(tag.bytes.size());
        constexpr double kBitsOfByte = 8;
        mStatus.bitsPerSecond = static_cast<std::int64_t>(kBitsOfByte * static_cast<double>(mStatus.bytes) /
                                                          (mStatus.seconds + Seconds(1)));
        return true;
    }

    [[nodiscard]] double Seconds(std::int64_t slots) const {
        return static_cast<double>(Times().BeginDown(slots, kNsInSecond)) / 1e9;
    }

    const SendSettings* mSettings;
    int mRate;
    FlvMaker mMaker;
    std::unique_ptr<SendClock> mOwnClock;
    SendClock* mClock;
    std::unique_ptr<StreamOutput> mOutput;
    std::optional<std::int64_t> mEnd;  // the slot that is not sent any more
    std::optional<std::int64_t> mLastNs;
    std::int64_t mSentSlots = 0;
    SendStatus mStatus;
};

}  // namespace

SendStatus SendFlv(const Clip& clip, const SendSettings& settings, const SendProgress& progress) {
    return FlvSender(clip, settings).Run(progress);
}

}  // namespace lineup
