#include "Host/Lineup/Send/Transport/StreamTimes.h"

#include <algorithm>

namespace lineup {
inline namespace parts {

namespace {

constexpr std::int64_t kMsOfSecond = 1000;
constexpr std::int64_t kNsOfSecond = 1'000'000'000;

int SlotsPerFrameAt(Rational frameRate) {
    return static_cast<int>(
        CeilDivided(Wide{kMsOfSecond} * frameRate.den, Wide{StreamTimes::kLongestSlotMs} * frameRate.num));
}

}  // namespace

StreamTimes::StreamTimes(Rational frameRate, std::int64_t bitsPerSecond)
    : mSlotsPerFrame(SlotsPerFrameAt(frameRate)),
      mSlotNum(std::int64_t{frameRate.num} * mSlotsPerFrame),
      mSlotDen(frameRate.den),
      mBitRate(bitsPerSecond) {}

std::int64_t StreamTimes::PacketsBefore(std::int64_t slot) const noexcept {
    return FloorDivided(Wide{slot} * mSlotDen * mBitRate, Wide{mSlotNum} * kTsBits);
}

std::int64_t StreamTimes::LeastPackets() const noexcept {
    return FloorDivided(Wide{mSlotDen} * mBitRate, Wide{mSlotNum} * kTsBits);
}

std::int64_t StreamTimes::PcrOf(std::int64_t packet) const noexcept {
    return FloorDivided(Wide{packet} * kTsBits * kPcrHz, mBitRate);
}

std::int64_t StreamTimes::NsOf(std::int64_t packet) const noexcept {
    return FloorDivided(Wide{packet} * kTsBits * kNsOfSecond, mBitRate);
}

std::int64_t StreamTimes::BeginDown(std::int64_t slot, std::int64_t unitsPerSecond) const noexcept {
    return FloorDivided(Wide{slot} * mSlotDen * unitsPerSecond, mSlotNum);
}

std::int64_t StreamTimes::BeginUp(std::int64_t slot, std::int64_t unitsPerSecond) const noexcept {
    return CeilDivided(Wide{slot} * mSlotDen * unitsPerSecond, mSlotNum);
}

std::int64_t StreamTimes::SlotAt(std::int64_t units, std::int64_t unitsPerSecond) const noexcept {
    return FloorDivided(Wide{units} * mSlotNum, Wide{mSlotDen} * unitsPerSecond);
}

std::int64_t StreamTimes::BitRateFor(Rational frameRate, std::int64_t packets) {
    const std::int64_t slots = std::int64_t{frameRate.num} * SlotsPerFrameAt(frameRate);
    return CeilDivided(Wide{packets} * kTsBits * slots, frameRate.den);
}

}  // namespace parts
}  // namespace lineup
