#include "Host/Lineup/Export/Media/SoundTracks.h"

#include "Host/Lineup/Export/Formats/SoundNames.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

namespace lineup {

namespace {

// Encoders that take any number of samples get no more than this at a time.
constexpr int kMostSamples = 8192;

constexpr std::string_view kMono = "mono";

/// FFmpeg's names of single channels, for the tracks of a file that says which channel each one is.
/// QuickTime's left and right surround are what FFmpeg calls the back.
struct ChannelLabel {
    std::string_view channel;
    std::string_view layout;
};
constexpr std::array<ChannelLabel, 6> kChannelLabels = {
    {{"L", "FL"}, {"R", "FR"}, {"C", "FC"}, {"LFE", "LFE"}, {"Ls", "BL"}, {"Rs", "BR"}}};

std::string MonoLayout(const FileFormat& format, std::string_view channel) {
    const auto* const label = std::ranges::find(kChannelLabels, channel, &ChannelLabel::channel);
    return std::string(format.labelsMonoTracks && label != kChannelLabels.end() ? label->layout : kMono);
}

}  // namespace

SoundTracks::SoundTracks(const Clip& clip, const ExportPlan& plan, std::int64_t startSample, Muxer& muxer)
    : mCodec(plan.audio), mReader(clip), mStart(startSample), mTotal(plan.samples), mSampleRateHz(plan.sampleRateHz) {
    AddTracks(plan, muxer);
    mBlockSamples = mTracks.front().encoder.BlockSamples();

    const auto channels = plan.channels->channels.size();
    const auto samples = static_cast<std::size_t>(std::max(mBlockSamples, kMostSamples));
    mSamples.resize(channels * samples);
    for (std::size_t c = 0; c < channels; ++c) {
        mChannels.push_back(mSamples.data() + c * samples);
    }
}

void SoundTracks::AddTracks(const ExportPlan& plan, Muxer& muxer) {
    const auto& order = plan.channels->fileOrder;
    if (!plan.monoTracks) {
        mTracks.push_back({SoundEncoder(*mCodec, {order.begin(), order.end()}, LayoutOfAll(*mCodec, order.size()),
                                        mSampleRateHz, muxer),
                           {}});
        return;
    }
    for (const int channel : order) {
        std::string title(plan.channels->channels[static_cast<std::size_t>(channel)]);
        SoundEncoder encoder(*mCodec, {channel}, MonoLayout(*plan.format, title), mSampleRateHz, muxer);
        muxer.Tag(encoder.Stream(), "title", title);
        muxer.Tag(encoder.Stream(), "handler_name", title);
        mTracks.push_back({std::move(encoder), std::move(title)});
    }
}

void SoundTracks::WriteUpTo(std::int64_t end) {
    end = std::min(end, mTotal);
    while (mPosition < end) {
        // An encoder with blocks of its own gets whole ones, which may reach past `end`.
        const std::int64_t wanted = mBlockSamples > 0 ? std::min<std::int64_t>(mBlockSamples, mTotal - mPosition)
                                                      : std::min<std::int64_t>(kMostSamples, end - mPosition);
        WriteBlock(static_cast<int>(wanted));
    }
}

void SoundTracks::WriteBlock(int count) {
    mReader.Read(mStart + mPosition, count, mChannels);
    for (Track& track : mTracks) {
        track.encoder.Write(mChannels, mPosition, count);
    }
    mPosition += count;
}

void SoundTracks::Finish() {
    for (Track& track : mTracks) {
        track.encoder.Finish();
    }
}

std::vector<AudioReport> SoundTracks::Report() const {
    std::vector<AudioReport> reports;
    for (const Track& track : mTracks) {
        AudioReport report;
        report.codec = mCodec->name;
        report.sampleFormat = SampleFormatName(mCodec->samples);
        report.sampleRateHz = mSampleRateHz;
        report.channels = track.encoder.Channels();
        report.layout = track.encoder.Layout();
        report.title = track.title;
        reports.push_back(std::move(report));
    }
    return reports;
}

}  // namespace lineup
