#include "Host/Lineup/Export/Media/FfmpegHandles.h"
#include "Host/Lineup/Export/Media/OpenSoundEncoder.h"
#include "Host/Lineup/Export/Samples/SamplePacking.h"
#include "Host/Lineup/Send/Media/CodedGroup.h"

extern "C" {
#include <libavutil/samplefmt.h>
}

namespace lineup {

namespace {

class AvSoundCoder final : public SoundCoder {
public:
    explicit AvSoundCoder(const SoundPlan& plan)
        : mSamples(plan.encoding->samples),
          mChannels(plan.tracks.front().channels),
          mEncoder(OpenSoundEncoder(plan, plan.tracks.front(), /*globalHeaders=*/false)),
          mFrame(NewAvFrame()),
          mPacket(NewAvPacket()) {
        mFrame->format = mEncoder->sample_fmt;
        mFrame->sample_rate = mEncoder->sample_rate;
        mFrame->nb_samples = mEncoder->frame_size;
        RequireAv(av_channel_layout_copy(&mFrame->ch_layout, &mEncoder->ch_layout), "cannot name a layout");
        RequireAv(av_frame_get_buffer(mFrame.get(), 0), "cannot make room for sound");
    }

    [[nodiscard]] int BlockSamples() const override { return mEncoder->frame_size; }
    [[nodiscard]] int PaddingSamples() const override { return mEncoder->initial_padding; }

    void Code(std::span<float* const> samples, std::vector<std::uint8_t>& packet) override {
        RequireAv(av_frame_make_writable(mFrame.get()), "cannot make room for sound");
        const bool planar = av_sample_fmt_is_planar(mEncoder->sample_fmt) != 0;
        const auto count = static_cast<std::size_t>(BlockSamples());
        for (std::size_t place = 0; place < mChannels.size(); ++place) {
            const float* const channel = samples[static_cast<std::size_t>(mChannels[place])];
            std::uint8_t* const first =
                planar ? mFrame->extended_data[place] : mFrame->data[0] + place * BytesPerSample(mSamples);
            PackSamples({channel, count}, mSamples, first, planar ? 1 : mChannels.size());
        }
        mFrame->pts = mPosition;
        mPosition += BlockSamples();
        SendFrame(*mEncoder, mFrame.get());
        if (ReceivePacket(*mEncoder, *mPacket)) {
            packet.assign(mPacket->data, mPacket->data + mPacket->size);
            av_packet_unref(mPacket.get());
        }
    }

private:
    SampleFormat mSamples;
    std::vector<int> mChannels;
    AvCodecContext mEncoder;
    AvFrame mFrame;
    AvPacket mPacket;
    std::int64_t mPosition = 0;
};

}  // namespace

std::unique_ptr<SoundCoder> OpenSoundCoder(const SoundPlan& plan) {
    return std::make_unique<AvSoundCoder>(plan);
}

}  // namespace lineup
