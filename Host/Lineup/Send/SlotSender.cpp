#include "Host/Lineup/Send/SlotSender.h"

#include "Host/Lineup/Send/Clocks.h"
#include "Host/Lineup/Send/SlotQueue.h"

namespace lineup {

namespace {

constexpr std::int64_t kNsEachSecond = 1'000'000'000;

}  // namespace

SlotSender::SlotSender(const Clip& clip, const SendSettings& settings)
    : mSettings(&settings),
      mRate(static_cast<int>(clip.SampleRate())),
      mOwnClock(settings.clock == nullptr ? MakeClock(settings.timing) : nullptr),
      mClock(settings.clock == nullptr ? mOwnClock.get() : settings.clock),
      mPacer(*mClock, IsWall() ? std::optional<std::int64_t>(0) : std::nullopt) {}

SlotSender::~SlotSender() = default;

SendStatus SlotSender::Run(const SendProgress& progress) {
    std::int64_t slot = FirstSlot();
    PlanEnd(slot);
    while (SendFrom(slot, progress)) {
        slot = FirstSlot();
    }
    return mStatus;
}

// By the system's clock a stream begins with the next slot but one, once all that it needs has been in use.
std::int64_t SlotSender::FirstSlot() {
    if (!IsWall()) {
        return Times().SlotAt(mSettings->startSample, mRate);
    }
    std::vector<std::uint8_t> unused;
    MakeSlot(Times().SlotAt(mClock->NowNs(), kNsEachSecond), unused);
    return EntryFrom(Times().SlotAt(mClock->NowNs(), kNsEachSecond) + 2);
}

void SlotSender::PlanEnd(std::int64_t slot) {
    std::int64_t first = mSettings->startSample;
    if (IsWall()) {
        first = Times().BeginDown(slot, mRate);
    } else {
        BeginAt(first, slot);
    }
    if (mSettings->samples) {
        const std::int64_t later = EndAt(first + *mSettings->samples);
        mEnd = Times().SlotAt(first + *mSettings->samples - 1, mRate) + 1 + later;
    }
}

// Sends from `slot` on, and moves it on. True when the clock that tells clip time has leapt; else all is sent, or
// progress wants no more.
bool SlotSender::SendFrom(std::int64_t& slot, const SendProgress& progress) {
    SlotQueue slots([this](std::int64_t number, std::vector<std::uint8_t>& bytes) { MakeSlot(number, bytes); }, slot);
    std::vector<std::uint8_t> bytes;
    for (; !mEnd || slot < *mEnd; ++slot) {
        slots.Take(bytes);
        const bool sent = SendSlot(slot, bytes);
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
    return !SendRest();
}

double SlotSender::Seconds(std::int64_t slots) const {
    return static_cast<double>(Times().BeginDown(slots, kNsEachSecond)) / 1e9;
}

void SlotSender::SayOfJumps() {
    if (mStatus.jumps != mSaidJumps && mSettings->notice) {
        mSettings->notice("the clock has leapt, or this machine stood still; sending goes on");
    }
    mSaidJumps = mStatus.jumps;
}

}  // namespace lineup
