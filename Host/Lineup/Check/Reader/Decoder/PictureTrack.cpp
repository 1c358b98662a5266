#include "Host/Lineup/Check/Reader/Decoder/PictureTrack.h"

#include "Host/Lineup/Check/Reader/Decoder/OpenDecoder.h"
#include "Host/Lineup/Check/Reader/Decoder/PictureCodes.h"
#include "Host/Lineup/Check/Reader/Decoder/TurnTag.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace lineup::decoding {

namespace {

// A recording may begin in the midst of a group of pictures, and a decoder that only complains goes on.
AvCodecContext OpenPictureDecoder(const AVStream& stream) {
    AvCodecContext decoder = DecoderFor(stream);
    decoder->max_pixels = kMostPicturePixels;
    OpenDecoder(*decoder);
    return decoder;
}

double FrameRate(const AVStream& stream) {
    const AVRational rate = stream.avg_frame_rate.num > 0 ? stream.avg_frame_rate : stream.r_frame_rate;
    const double perSecond = rate.num > 0 && rate.den > 0 ? av_q2d(rate) : 0;
    return perSecond <= 1000 ? perSecond : 0;
}

// Every frame is decoded without others.
bool StandsAlone(AVCodecID id) {
    const AVCodecDescriptor* const codec = avcodec_descriptor_get(id);
    return codec != nullptr && (codec->props & AV_CODEC_PROP_INTRA_ONLY) != 0;
}

std::uint32_t PictureLosses(AVCodecID id) {
    const AVCodecDescriptor* const codec = avcodec_descriptor_get(id);
    const int props = codec != nullptr ? codec->props : 0;
    const bool isLossy = (props & AV_CODEC_PROP_LOSSY) != 0;
    const bool isLossless = (props & AV_CODEC_PROP_LOSSLESS) != 0;
    return isLossy == isLossless ? 0U : isLossy ? kLossy : kLossless;
}

}  // namespace

PictureTrack::PictureTrack(const AVStream& stream, double origin, std::optional<double> length, bool isStill)
    : mStream(&stream),
      mOrigin(origin),
      mIsStill(isStill),
      mDecoder(OpenPictureDecoder(stream)),
      mFrame(RequireMemory(av_frame_alloc())),
      mSampling(StandsAlone(stream.codecpar->codec_id), FrameRate(stream), length.value_or(0)) {
    const double rate = FrameRate(stream);
    mFrameSeconds = rate > 0 ? 1 / rate : 0;
}

Picture PictureTrack::Facts() const {
    return {.frameRate = FrameRate(*mStream),
            .flags = PictureLosses(mDecoder->codec_id),
            .isStill = mIsStill ? 1U : 0U,
            .codec = ToField<32>(avcodec_get_name(mDecoder->codec_id))};
}

void PictureTrack::BeginAt(double seconds, bool isNear) {
    mFrom = seconds;
    mMayMiss = isNear;
    mHasMissed = false;
    avcodec_flush_buffers(mDecoder.get());
    if (isNear) {
        mSampling.TakeAll();
    }
}

PictureEnd PictureTrack::Length() const {
    const double start = mStart.value_or(0);
    return {.start = start, .end = std::max(mEnd, start), .frames = mPackets};
}

void PictureTrack::Count(const AVPacket& packet) {
    ++mPackets;
    const std::int64_t stamp = packet.pts != AV_NOPTS_VALUE ? packet.pts : packet.dts;
    const double tick = av_q2d(mStream->time_base);
    const double start = stamp != AV_NOPTS_VALUE ? static_cast<double>(stamp) * tick - mOrigin : mEnd;
    if (std::isfinite(start) && std::abs(start) < kLastSecond / 2) {
        const double length = packet.duration > 0 ? static_cast<double>(packet.duration) * tick : mFrameSeconds;
        mStart = std::min(mStart.value_or(start), start);
        mEnd = mPackets == 1 ? start + length : std::max(mEnd, start + length);
    }
}

PacketFacts PictureTrack::FactsOf(const AVPacket& packet) const {
    const std::int64_t stamp = packet.dts != AV_NOPTS_VALUE ? packet.dts : packet.pts;
    return {.seconds = stamp != AV_NOPTS_VALUE ? static_cast<double>(stamp) * av_q2d(mStream->time_base) : mEnd,
            .isKey = (packet.flags & AV_PKT_FLAG_KEY) != 0,
            .isDamaged = (packet.flags & AV_PKT_FLAG_CORRUPT) != 0,
            .bytes = packet.size};
}

void PictureTrack::Decode(const AVPacket* packet, MessageWriter& out) {
    if (packet == nullptr) {
        Send(nullptr, out);
        WriteHeld(out);
        return;
    }
    Count(*packet);
    const PacketFacts facts = FactsOf(*packet);
    if (facts.isKey) {
        mGroup.Begin(*packet);
    }
    switch (mSampling.Takes(facts)) {
        case PictureSampling::Taken::No:
            mGroup.Hold(*packet);
            break;
        case PictureSampling::Taken::Alone:
            Send(packet, out);
            break;
        case PictureSampling::Taken::WithGroup:
            mGroup.Hold(*packet);
            for (const AvPacket& held : mGroup.Release()) {
                Send(held.get(), out);
            }
            break;
    }
}

void PictureTrack::Send(const AVPacket* packet, MessageWriter& out) {
    if (avcodec_send_packet(mDecoder.get(), packet) == AVERROR(ENOMEM)) {
        throw std::bad_alloc();
    }
    Receive(out);
}

void PictureTrack::Receive(MessageWriter& out) {
    while (avcodec_receive_frame(mDecoder.get(), mFrame.get()) >= 0) {
        const auto side = [](int pixels) { return pixels >= 1 && pixels <= static_cast<int>(kMostPictureSide); };
        if (side(mFrame->width) && side(mFrame->height)) {
            Take(out);
        }
        av_frame_unref(mFrame.get());
    }
}

double PictureTrack::SecondsOf(const AVFrame& frame) const {
    const std::int64_t stamp = frame.best_effort_timestamp;
    const double seconds = static_cast<double>(stamp) * av_q2d(mStream->time_base) - mOrigin;
    return stamp != AV_NOPTS_VALUE && std::abs(seconds) < kLastSecond ? seconds : mEnd;
}

// Of those before the place where it begins, the last one alone.
void PictureTrack::Take(MessageWriter& out) {
    constexpr double kSameMoment = 1e-3;  // s
    if (mFrom && SecondsOf(*mFrame) <= *mFrom + kSameMoment) {
        mHeld.reset(RequireMemory(av_frame_clone(mFrame.get())));
        mMayMiss = false;
        return;
    }
    mHasMissed = mHasMissed || mMayMiss;
    if (mHasMissed) {
        return;
    }
    WriteHeld(out);
    Write(out);
}

void PictureTrack::WriteHeld(MessageWriter& out) {
    if (mHeld) {
        std::swap(mFrame, mHeld);
        Write(out);
        std::swap(mFrame, mHeld);
        mHeld.reset();
    }
}

void PictureTrack::Write(MessageWriter& out) {
    Frame head = DescribePicture(*mFrame, *mDecoder);
    head.seconds = SecondsOf(*mFrame);
    // What the container says goes before what its pictures say.
    const AVRational aspect =
        mStream->sample_aspect_ratio.num > 0 ? mStream->sample_aspect_ratio : mFrame->sample_aspect_ratio;
    head.pixelAspect = aspect.num > 0 && aspect.den > 0 ? static_cast<float>(av_q2d(aspect)) : 0;
    DescribeTurn(*mFrame, *mStream, head);
    out.Write(head);
    if (head.planes > 0) {
        WritePlanes(head, out);
    }
    out.Flush();
}

void PictureTrack::WritePlanes(const Frame& head, MessageWriter& out) {
    for (std::uint32_t plane = 0; plane < head.planes; ++plane) {
        const std::uint32_t right = plane == 0 ? 0 : head.subsampleWidth;
        const std::uint32_t down = plane == 0 ? 0 : head.subsampleHeight;
        const std::uint32_t width = (head.width + (1U << right) - 1) >> right;
        const std::uint32_t height = (head.height + (1U << down) - 1) >> down;
        const auto most = static_cast<std::uint32_t>(MessageWriter::MostCodes() / width);
        for (std::uint32_t first = 0; first < height; first += most) {
            const std::uint32_t count = std::min(most, height - first);
            const auto codes = out.WriteLines({.plane = plane, .first = first, .count = count, .reserved = 0},
                                              std::size_t{count} * width);
            for (std::uint32_t line = 0; line < count; ++line) {
                ReadCodes(*mFrame, plane, first + line, codes.subspan(std::size_t{line} * width, width));
            }
        }
    }
}

}  // namespace lineup::decoding
