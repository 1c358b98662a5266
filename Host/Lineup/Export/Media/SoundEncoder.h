#pragma once

#include <lineup/FormatTable.h>
#include "Host/Lineup/Export/Media/FfmpegHandles.h"
#include "Host/Lineup/Export/Media/Muxer.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace lineup {

/// One sound track: packs and encodes some of the clip's channels.
class SoundEncoder {
public:
    /// `channels` are the plug-in's channels in the track's order, `layout` FFmpeg's name for that many
    /// channels. Opens the encoder and adds its stream to the muxer.
    SoundEncoder(const AudioCodec& codec, std::vector<int> channels, std::string layout, int sampleRateHz,
                 Muxer& muxer);

    /// Samples the encoder wants at a time, the last time fewer; 0: any number.
    [[nodiscard]] int BlockSamples() const noexcept { return mEncoder->frame_size; }

    [[nodiscard]] int Channels() const noexcept { return static_cast<int>(mChannels.size()); }

    [[nodiscard]] const std::string& Layout() const noexcept { return mLayout; }

    /// The stream's number in the muxer.
    [[nodiscard]] int Stream() const noexcept { return mStream; }

    /// Writes `count` samples, the first of them sample `position` of the file. `samples` holds all of
    /// the plug-in's channels.
    void Write(std::span<float* const> samples, std::int64_t position, int count);

    /// Writes what the encoder still holds back.
    void Finish();

private:
    void Reserve(int count);
    void WriteUncompressed(std::span<float* const> samples, std::int64_t position, int count);
    void WritePackets();

    const AudioCodec* mCodec;
    std::vector<int> mChannels;
    std::string mLayout;
    Muxer* mMuxer;
    AvCodecContext mEncoder;
    AvFrame mFrame;
    AvPacket mPacket;
    int mStream;
    bool mUncompressed;
    std::vector<const float*> mSources;  // of a write, in the track's order
};

}  // namespace lineup
