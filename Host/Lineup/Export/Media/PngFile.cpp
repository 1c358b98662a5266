#include "Host/Lineup/Export/Media/PngFile.h"

#include <lineup/FormatTable.h>
#include "Host/Lineup/Export/Media/FfmpegHandles.h"
#include "Host/Lineup/Export/Media/VideoFrame.h"
#include "Host/Lineup/Files/TargetFile.h"

namespace lineup {

void WritePngFile(const Clip& clip, int width, int height, Card card, const std::filesystem::path& target,
                  bool overwrite) {
    const VideoCodec& codec = *FindVideoCodec("png");
    TargetFile file(target, overwrite);

    const AvFrame frame = MakeVideoFrame(clip, codec, width, height, card);
    const AvCodecContext encoder = NewEncoder(codec.encoder);
    DescribeFrame(*encoder, *frame);
    encoder->time_base = {1, 1};
    AvOptions options(codec.options);
    OpenEncoder(*encoder, options);
    SendFrame(*encoder, frame.get());
    SendFrame(*encoder, nullptr);

    const AvPacket packet = NewAvPacket();
    while (ReceivePacket(*encoder, *packet)) {
        file.Write({packet->data, static_cast<std::size_t>(packet->size)});
    }
    file.Commit();
}

}  // namespace lineup
