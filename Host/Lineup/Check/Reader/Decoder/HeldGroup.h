#pragma once

#include "Host/Lineup/Check/Reader/Decoder/FfmpegOwners.h"

#include <cstdint>
#include <vector>

namespace lineup::decoding {

/// The packets since the last key packet that were not decoded, in case a later one needs them. Those that need what
/// came before the key packet are left out. Memory has a limit: nothing is held of a group that goes beyond it.
class HeldGroup {
public:
    /// A key packet: those before it are of no more use.
    void Begin(const AVPacket& key);

    /// Keeps a packet that was not decoded.
    void Hold(const AVPacket& packet);

    /// Those that were held, in their order, to decode them now.
    [[nodiscard]] std::vector<AvPacket> Release();

private:
    std::vector<AvPacket> mPackets;
    std::int64_t mBytes = 0;
    std::int64_t mShownFrom = AV_NOPTS_VALUE;  // the key packet's time
    bool mIsTooLarge = false;
};

}  // namespace lineup::decoding
