#include "Host/Lineup/Check/Reader/Decoder/PictureSampling.h"

#include <algorithm>
#include <cmath>

namespace lineup::decoding {

namespace {

constexpr std::int64_t kFirstFrames = 100;  // of a recording that does not say how long it is
constexpr double kStepOfStreams = 1;        // s, behind them
constexpr double kOtherSize = 0.2;          // of a packet that stands alone
constexpr double kTimesLarger = 3;  // than the usual one that needs others: of a still card these say next to nothing
constexpr double kAllowance = 64;   // bytes more
constexpr double kSlowly = 16;

}  // namespace

PictureSampling::PictureSampling(bool standAlone, double frameRate, double length)
    : mTakesAll(length > 0 && length * frameRate <= kMostFrames),
      mKeysOnly(!standAlone),
      mIsStream(length <= 0),
      mStep(length > 0 ? length / kMostFrames : kStepOfStreams),
      mTaken(length > 0 ? kFirstFrames : 0) {}

// Follows the sizes slowly, so that a few odd ones do not become the usual ones.
bool PictureSampling::IsUnusual(const PacketFacts& packet, bool standsAlone) {
    const auto bytes = static_cast<double>(packet.bytes);
    double& usual = standsAlone ? mUsualAlone : mUsualOther;
    const bool isOther =
        standsAlone ? std::abs(bytes - usual) > kOtherSize * usual : bytes > kTimesLarger * usual + kAllowance;
    const bool isFirst = usual == 0;
    usual = isFirst ? bytes : usual + std::clamp(bytes - usual, -usual, usual) / kSlowly;
    return (isOther && !isFirst) || packet.isDamaged;
}

bool PictureSampling::IsDue(double seconds) {
    if (mNext && seconds < *mNext && seconds > *mNext - 2 * mStep) {
        return false;
    }
    mNext = (mNext && seconds < *mNext + mStep ? std::max(*mNext, seconds - mStep) : seconds) + mStep;
    ++mTaken;
    mMore -= mIsStream && mMore > 0 ? 1 : 0;
    return true;
}

// Behind the first frames of a stream, frames that need others are not decoded any more: the first one after them is
// key.
PictureSampling::Taken PictureSampling::Takes(const PacketFacts& packet) {
    if (mTakesAll || mTaken < kFirstFrames) {
        ++mTaken;
        return Taken::Alone;
    }
    const bool standsAlone = !mKeysOnly || packet.isKey;
    const bool hasMore = mMore < kMostMore;
    const bool isUnusual = IsUnusual(packet, standsAlone) && hasMore;
    mIsFollowing = !standsAlone && hasMore && (mIsFollowing || isUnusual);
    if (standsAlone && IsDue(packet.seconds)) {
        return Taken::Alone;
    }
    if (!isUnusual && !mIsFollowing) {
        return Taken::No;
    }
    ++mMore;
    return standsAlone ? Taken::Alone : Taken::WithGroup;
}

}  // namespace lineup::decoding
