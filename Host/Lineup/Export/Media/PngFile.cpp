#include "Host/Lineup/Export/Media/PngFile.h"

#include "Host/Lineup/Export/Media/FfmpegHandles.h"
#include "Host/Lineup/Export/Media/VideoFrame.h"
#include "Host/Lineup/Export/Progress.h"

namespace lineup {

void WritePngFile(const Clip& clip, const ExportPlan& plan, TargetFile& file, const ProgressFunction& progress) {
    ReportProgress(progress, 0, 1, plan);
    const AvFrame frame = MakeVideoFrame(clip, *plan.picture);
    const VideoEncoding& encoding = *plan.picture->encoding;
    const AvCodecContext encoder = NewEncoder(encoding.encoder);
    DescribeFrame(*encoder, *frame);
    encoder->time_base = {1, 1};
    AvOptions options(encoding.options);
    OpenEncoder(*encoder, options);
    SendFrame(*encoder, frame.get());
    SendFrame(*encoder, nullptr);

    const AvPacket packet = NewAvPacket();
    while (ReceivePacket(*encoder, *packet)) {
        file.Write({packet->data, static_cast<std::size_t>(packet->size)});
    }
}

}  // namespace lineup
