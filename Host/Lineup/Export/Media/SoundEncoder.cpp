#include "Host/Lineup/Export/Media/SoundEncoder.h"

#include "Host/Lineup/Export/Media/OpenSoundEncoder.h"
#include "Host/Lineup/Export/Samples/SamplePacking.h"

#include <algorithm>
#include <array>
#include <string_view>

extern "C" {
#include <libavutil/samplefmt.h>
}

namespace lineup {

namespace {

// How the encoders' names begin that write samples as PackFrames packs them.
constexpr std::string_view kUncompressed = "pcm_";

// How muxers and players know the title of a track.
constexpr std::array<std::string_view, 2> kTitleKeys = {"title", "handler_name"};

/// The atom "chan" that names a layout by its tag alone: a size, the name, version and flags, the tag, no bitmap and no
/// descriptions.
std::array<std::uint8_t, 24> ChannelAtom(std::uint32_t tag) {
    constexpr int kTagAt = 12;
    std::array<std::uint8_t, 24> atom = {0, 0, 0, 24, 'c', 'h', 'a', 'n'};
    for (unsigned i = 0; i < 4; ++i) {
        atom.at(kTagAt + i) = static_cast<std::uint8_t>(tag >> (24U - 8U * i));
    }
    return atom;
}

}  // namespace

SoundEncoder::SoundEncoder(const SoundPlan& plan, const TrackPlan& track, Muxer& muxer)
    : mSamples(plan.encoding->samples),
      mChannels(track.channels),
      mMuxer(&muxer),
      mEncoder(OpenSoundEncoder(plan, track, muxer.WantsGlobalHeaders())),
      mFrame(NewAvFrame()),
      mPacket(NewAvPacket()),
      mStream(muxer.AddStream(*mEncoder)),
      mUncompressed(plan.encoding->encoder.starts_with(kUncompressed)),
      mSources(mChannels.size()) {
    muxer.Label(mStream, track.label);
    if (track.tag != 0) {
        muxer.AddToCodecData(mStream, ChannelAtom(track.tag));
    }
    for (const std::string_view key : kTitleKeys) {
        if (!track.title.empty()) {
            muxer.Tag(mStream, key, track.title);
        }
    }
}

// The encoder may still hold the samples of the last frame; if not, its memory is used again.
void SoundEncoder::Reserve(int count) {
    if (mFrame->nb_samples >= count && av_frame_is_writable(mFrame.get()) > 0) {
        mFrame->nb_samples = count;
        return;
    }
    av_frame_unref(mFrame.get());
    mFrame->format = mEncoder->sample_fmt;
    mFrame->sample_rate = mEncoder->sample_rate;
    mFrame->nb_samples = count;
    RequireAv(av_channel_layout_copy(&mFrame->ch_layout, &mEncoder->ch_layout), "cannot name a layout");
    RequireAv(av_frame_get_buffer(mFrame.get(), 0), "cannot make room for sound");
}

void SoundEncoder::Write(std::span<float* const> samples, std::int64_t position, int count) {
    if (mUncompressed) {
        WriteUncompressed(samples, position, count);
        return;
    }
    Reserve(count);
    const bool planar = av_sample_fmt_is_planar(mEncoder->sample_fmt) != 0;
    for (std::size_t place = 0; place < mChannels.size(); ++place) {
        const float* const channel = samples[static_cast<std::size_t>(mChannels[place])];
        std::uint8_t* const first =
            planar ? mFrame->extended_data[place] : mFrame->data[0] + place * BytesPerSample(mSamples);
        PackSamples({channel, static_cast<std::size_t>(count)}, mSamples, first, planar ? 1 : mChannels.size());
    }
    mFrame->pts = position;
    SendFrame(*mEncoder, mFrame.get());
    WritePackets();
}

// The packet an encoder would make, without the detour through its own sample format.
void SoundEncoder::WriteUncompressed(std::span<float* const> samples, std::int64_t position, int count) {
    std::ranges::transform(mChannels, mSources.begin(),
                           [samples](int channel) { return samples[static_cast<std::size_t>(channel)]; });
    const std::size_t bytes = static_cast<std::size_t>(count) * mChannels.size() * PackedBytes(mSamples);
    RequireAv(av_new_packet(mPacket.get(), static_cast<int>(bytes)), "cannot make room for sound");
    PackFrames(mSources, static_cast<std::size_t>(count), mSamples, mPacket->data);
    mPacket->flags |= AV_PKT_FLAG_KEY;
    mPacket->pts = position;
    mPacket->dts = position;
    mPacket->duration = count;
    mMuxer->Write(*mPacket, mStream, mEncoder->time_base);
}

void SoundEncoder::Finish() {
    if (mUncompressed) {
        return;
    }
    SendFrame(*mEncoder, nullptr);
    WritePackets();
}

void SoundEncoder::WritePackets() {
    while (ReceivePacket(*mEncoder, *mPacket)) {
        mMuxer->Write(*mPacket, mStream, mEncoder->time_base);
    }
}

}  // namespace lineup
