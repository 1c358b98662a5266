#include "Host/Lineup/Check/Reader/Decoder/Resampler.h"

#include "Host/Lineup/Check/Reader/Decoder/EarlyEnd.h"

namespace lineup::decoding {

namespace {

void Require(int result) {
    if (result == AVERROR(ENOMEM)) {
        throw std::bad_alloc();
    }
    if (result < 0) {
        throw EarlyEnd(EndCause::CutShort, "a track's sample rate cannot be converted: " + AvErrorText(result));
    }
}

}  // namespace

Resampler::Resampler(const AVFrame& frame, int rate)
    : mConverted(RequireMemory(av_frame_alloc())), mLayout{}, mRate(rate) {
    // By their number alone: no channel is mixed into another, whatever their names are.
    mLayout.order = AV_CHANNEL_ORDER_UNSPEC;
    mLayout.nb_channels = frame.ch_layout.nb_channels;
    SwrContext* context = nullptr;
    Require(swr_alloc_set_opts2(&context, &mLayout, AV_SAMPLE_FMT_FLTP, rate, &mLayout,
                                static_cast<AVSampleFormat>(frame.format), frame.sample_rate, 0, nullptr));
    mContext.reset(context);
    Require(swr_init(context));
}

const AVFrame& Resampler::Convert(const AVFrame* frame) {
    const int in = frame != nullptr ? frame->nb_samples : 0;
    av_frame_unref(mConverted.get());
    mConverted->format = AV_SAMPLE_FMT_FLTP;
    mConverted->ch_layout = mLayout;
    mConverted->sample_rate = mRate;
    mConverted->nb_samples = swr_get_out_samples(mContext.get(), in);
    if (mConverted->nb_samples <= 0) {
        mConverted->nb_samples = 0;
        return *mConverted;
    }
    Require(av_frame_get_buffer(mConverted.get(), 0));
    const auto** planes = frame != nullptr ? const_cast<const std::uint8_t**>(frame->extended_data) : nullptr;
    const int out = swr_convert(mContext.get(), mConverted->extended_data, mConverted->nb_samples, planes, in);
    Require(out);
    mConverted->nb_samples = out;
    return *mConverted;
}

}  // namespace lineup::decoding
