#include "Host/Lineup/Export/Media/RepeatedPicture.h"

#include <algorithm>
#include <utility>

namespace lineup {

RepeatedPicture::RepeatedPicture(AvPacket picture, std::optional<GopTimecode> timecode,
                                 std::optional<ConstantRate> rate)
    : mDelay(picture->dts == AV_NOPTS_VALUE ? 0 : picture->pts - picture->dts), mTimecode(timecode), mRate(rate) {
    mCopies.push_back(std::move(picture));
}

void RepeatedPicture::Fill(AVPacket& packet, std::int64_t index) {
    AVPacket& picture = mTimecode ? FreeCopy() : *mCopies.front();
    if (mTimecode) {
        mTimecode->Set({picture.data, static_cast<std::size_t>(picture.size)}, index);
    }
    RequireAv(av_packet_ref(&packet, &picture), "cannot repeat a frame");
    if (mRate) {
        packet.size = static_cast<int>(mRate->BytesOf(index));
    }
    packet.pts = index;
    packet.dts = index - mDelay;
    packet.duration = 1;
}

// A copy that no muxer holds on to any more; the muxer keeps a packet until the other streams have caught up.
AVPacket& RepeatedPicture::FreeCopy() {
    const auto free =
        std::ranges::find_if(mCopies, [](const AvPacket& copy) { return av_buffer_get_ref_count(copy->buf) == 1; });
    if (free != mCopies.end()) {
        return **free;
    }
    AvPacket copy = NewAvPacket();
    RequireAv(av_packet_ref(copy.get(), mCopies.front().get()), "cannot repeat a frame");
    RequireAv(av_packet_make_writable(copy.get()), "cannot repeat a frame");
    mCopies.push_back(std::move(copy));
    return *mCopies.back();
}

}  // namespace lineup
