#include "Host/Lineup/Check/Reader/Decoder/HeldGroup.h"

#include <utility>

namespace lineup::decoding {

namespace {

constexpr std::size_t kMostHeld = 600;  // packets
constexpr std::int64_t kMostBytes = std::int64_t{16} << 20;

}  // namespace

void HeldGroup::Begin(const AVPacket& key) {
    mPackets.clear();
    mBytes = 0;
    mIsTooLarge = false;
    mShownFrom = key.pts;
}

void HeldGroup::Hold(const AVPacket& packet) {
    const bool isBeforeKey = packet.pts != AV_NOPTS_VALUE && mShownFrom != AV_NOPTS_VALUE && packet.pts < mShownFrom;
    if (mIsTooLarge || isBeforeKey) {
        return;
    }
    mBytes += packet.size;
    mIsTooLarge = mPackets.size() >= kMostHeld || mBytes > kMostBytes;
    if (mIsTooLarge) {
        mPackets.clear();
        return;
    }
    mPackets.emplace_back(RequireMemory(av_packet_clone(&packet)));
}

std::vector<AvPacket> HeldGroup::Release() {
    mBytes = 0;
    return std::exchange(mPackets, {});
}

}  // namespace lineup::decoding
