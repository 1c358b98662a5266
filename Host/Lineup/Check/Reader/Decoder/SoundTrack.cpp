#include "Host/Lineup/Check/Reader/Decoder/SoundTrack.h"

#include "Host/Lineup/Check/Reader/Decoder/EarlyEnd.h"
#include "Host/Lineup/Check/Reader/Decoder/LibraryLog.h"
#include "Host/Lineup/Check/Reader/Decoder/OpenDecoder.h"
#include "Host/Lineup/Check/Reader/Decoder/SampleConversion.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

namespace lineup::decoding {

namespace {

AvCodecContext OpenSoundDecoder(const AVStream& stream) {
    AvCodecContext decoder = DecoderFor(stream);
    decoder->err_recognition = AV_EF_CRCCHECK | AV_EF_EXPLODE;  // what fails its own checksum is damaged
    OpenDecoder(*decoder);
    return decoder;
}

// Of a sample of whole numbers; codecs that keep other things have none.
std::uint32_t Bits(const AVCodecContext& decoder) {
    const AVSampleFormat packed = av_get_packed_sample_fmt(decoder.sample_fmt);
    const AVCodecDescriptor* const codec = avcodec_descriptor_get(decoder.codec_id);
    const bool isLossless = codec != nullptr && (codec->props & AV_CODEC_PROP_LOSSY) == 0;
    if (!isLossless || packed == AV_SAMPLE_FMT_FLT || packed == AV_SAMPLE_FMT_DBL) {
        return 0;
    }
    const int bits = decoder.bits_per_raw_sample > 0 ? decoder.bits_per_raw_sample
                     : av_get_exact_bits_per_sample(decoder.codec_id) > 0
                         ? av_get_exact_bits_per_sample(decoder.codec_id)
                         : av_get_bytes_per_sample(packed) * 8;
    return static_cast<std::uint32_t>(std::clamp(bits, 0, 64));
}

std::uint32_t Losses(AVCodecID id) {
    const AVCodecDescriptor* const codec = avcodec_descriptor_get(id);
    if (codec == nullptr) {
        return 0;
    }
    const bool isLossy = (codec->props & AV_CODEC_PROP_LOSSY) != 0;
    const bool isLossless = (codec->props & AV_CODEC_PROP_LOSSLESS) != 0;
    return isLossy == isLossless ? 0U : isLossy ? kLossy : kLossless;
}

}  // namespace

SoundTrack::SoundTrack(const AVStream& stream, std::uint32_t index, std::uint32_t rate, double origin)
    : mStream(&stream),
      mIndex(index),
      mRate(rate),
      mOwnRate(static_cast<std::uint32_t>(stream.codecpar->sample_rate)),
      mChannels(stream.codecpar->ch_layout.nb_channels),
      mDecoder(OpenSoundDecoder(stream)),
      mFrame(RequireMemory(av_frame_alloc())),
      mClock(mOwnRate, origin),
      mOrigin(origin) {}

Track SoundTrack::Facts() const {
    std::array<char, 64> layout{};
    av_channel_layout_describe(&mStream->codecpar->ch_layout, layout.data(), layout.size());
    return {.index = mIndex,
            .sampleRate = mRate,
            .channels = static_cast<std::uint32_t>(mChannels),
            .bits = Bits(*mDecoder),
            .flags = Losses(mDecoder->codec_id),
            .recordedRate = mOwnRate,
            .codec = ToField<32>(avcodec_get_name(mDecoder->codec_id)),
            .layout = ToField<64>(layout.data())};
}

void SoundTrack::Decode(const AVPacket* packet, MessageWriter& out) {
    const int sent = avcodec_send_packet(mDecoder.get(), packet);
    if (sent == AVERROR(ENOMEM)) {
        throw std::bad_alloc();
    }
    if (sent < 0 && sent != AVERROR_EOF) {
        mTrouble = AvErrorText(sent);
    }
    Receive(out);
    if (packet == nullptr && mResampler) {
        WriteResampled(nullptr, out);
    }
}

void SoundTrack::Receive(MessageWriter& out) {
    while (true) {
        const int received = avcodec_receive_frame(mDecoder.get(), mFrame.get());
        if (received == AVERROR(EAGAIN) || received == AVERROR_EOF) {
            return;
        }
        if (received == AVERROR(ENOMEM)) {
            throw std::bad_alloc();
        }
        if (received < 0) {
            mTrouble = AvErrorText(received);
            return;
        }
        TakeFrame(out);
    }
}

void SoundTrack::RequireSameKind() const {
    if (mFrame->ch_layout.nb_channels != mChannels || mFrame->sample_rate != static_cast<int>(mOwnRate)) {
        const double seconds = static_cast<double>(mClock.End()) / mOwnRate;
        throw EarlyEnd(
            EndCause::CutShort,
            fmt::format("at {:.3f} s track {} turns from {} channels at {} Hz into {} at {} Hz", seconds, mIndex + 1,
                        mChannels, mOwnRate, mFrame->ch_layout.nb_channels, mFrame->sample_rate));
    }
}

// A recording may begin in the midst of anything: packets that fail before the first frame are not damage.
void SoundTrack::TakeFrame(MessageWriter& out) {
    const bool isCorrupt = (mFrame->flags & AV_FRAME_FLAG_CORRUPT) != 0 || mFrame->decode_error_flags != 0;
    if (mFrame->nb_samples <= 0 || (isCorrupt && !mHasBegun)) {
        return;
    }
    RequireSameKind();
    const std::int64_t stamp = mFrame->best_effort_timestamp;
    const double tick = av_q2d(mStream->time_base);
    if (mBeginsAtOrigin && !mHasBegun && stamp != AV_NOPTS_VALUE && static_cast<double>(stamp) * tick < mOrigin) {
        return;
    }
    const auto place =
        mClock.Next(stamp != AV_NOPTS_VALUE ? std::optional(static_cast<double>(stamp) * tick) : std::nullopt, tick,
                    mFrame->nb_samples);
    if (isCorrupt) {
        mTrouble = "damaged on its way";
        WriteDamage({.position = place.position + mFrame->nb_samples, .gap = place.gap + mFrame->nb_samples}, out);
        return;
    }
    if (mHasBegun && (place.gap > 0 || !mTrouble.empty())) {
        WriteDamage(place, out);
    }
    mHasBegun = true;
    mTrouble.clear();
    if (mArrived && stamp != AV_NOPTS_VALUE) {
        out.Write(Arrival{.position = AtRate(place.position),
                          .stamp = static_cast<double>(stamp) * tick - mOrigin,
                          .arrived = *mArrived});
    }
    Write(place, out);
}

// The stretch that ends where a frame has its place.
void SoundTrack::WriteDamage(const TrackClock::Place& place, MessageWriter& out) {
    const std::int64_t end = AtRate(place.position);
    const std::int64_t start = AtRate(place.position - place.gap);
    out.Write(decoding::Damage{.track = mIndex,
                               .reserved = 0,
                               .position = start,
                               .count = end - start,
                               .reason = ToField<128>(mTrouble.empty() ? "missing" : mTrouble)});
}

std::int64_t SoundTrack::AtRate(std::int64_t position) const {
    return mRate == mOwnRate ? position : av_rescale(position, mRate, mOwnRate);
}

void SoundTrack::Write(const TrackClock::Place& place, MessageWriter& out) {
    if (mRate == mOwnRate) {
        WriteBlocks(place.position, *mFrame, out);
        return;
    }
    if (place.gap > 0 && mResampler) {
        WriteResampled(nullptr, out);
        mResampler.reset();
    }
    if (!mResampler) {
        mResampler.emplace(*mFrame, static_cast<int>(mRate));
        mResampledEnd = std::max(mResampledEnd, AtRate(place.position));
    }
    WriteResampled(mFrame.get(), out);
}

void SoundTrack::WriteResampled(const AVFrame* frame, MessageWriter& out) {
    const AVFrame& converted = mResampler->Convert(frame);
    WriteBlocks(mResampledEnd, converted, out);
    mResampledEnd += converted.nb_samples;
}

void SoundTrack::WriteBlocks(std::int64_t position, const AVFrame& frame, MessageWriter& out) const {
    const auto channels = static_cast<std::size_t>(mChannels);
    const auto total = static_cast<std::size_t>(frame.nb_samples);
    for (std::size_t first = 0; first < total;) {
        const std::size_t count = std::min(total - first, kMostValues / channels);
        const Samples head{.track = mIndex,
                           .channels = static_cast<std::uint32_t>(channels),
                           .count = static_cast<std::uint32_t>(count),
                           .reserved = 0,
                           .position = position + static_cast<std::int64_t>(first)};
        ConvertSamples(frame, first, count, out.WriteSamples(head));
        first += count;
    }
}

}  // namespace lineup::decoding
