#include "Host/Lineup/Send/Media/CodedGroup.h"

#include "Host/Lineup/Export/Media/FfmpegHandles.h"
#include "Host/Lineup/Export/Media/PictureEncoder.h"
#include "Host/Lineup/Export/Media/VideoFrame.h"

#include <fmt/format.h>

namespace lineup {

std::vector<std::vector<std::uint8_t>> CodeGroup(const Clip& clip, const PicturePlan& plan, int frames) {
    const AvFrame frame = MakeVideoFrame(clip, plan);
    const AvCodecContext encoder = OpenPictureEncoder(*frame, plan, /*globalHeaders=*/false);
    const AvPacket packet = NewAvPacket();
    std::vector<std::vector<std::uint8_t>> units;
    const auto receive = [&] {
        while (ReceivePacket(*encoder, *packet)) {
            units.emplace_back(packet->data, packet->data + packet->size);
            av_packet_unref(packet.get());
        }
    };
    for (int i = 0; i < frames; ++i) {
        SendPicture(*encoder, *frame, i);
        receive();
    }
    SendFrame(*encoder, nullptr);
    receive();
    if (units.size() != static_cast<std::size_t>(frames)) {
        throw Error(fmt::format("cannot encode the picture: {} frames came out of {}", units.size(), frames));
    }
    return units;
}

}  // namespace lineup
