#pragma once

#include "Host/Lineup/Export/Media/FfmpegHandles.h"
#include "Host/Lineup/Export/Media/Muxer.h"
#include "Host/Lineup/Export/Plan/ExportPlan.h"

#include <cstdint>
#include <span>
#include <vector>

namespace lineup {

/// One sound track: packs and encodes some of the clip's channels.
class SoundEncoder {
public:
    /// Opens the encoder and adds its stream to the muxer.
    SoundEncoder(const SoundPlan& plan, const TrackPlan& track, Muxer& muxer);

    /// Samples the encoder wants at a time, the last time fewer; 0: any number.
    [[nodiscard]] int BlockSamples() const noexcept { return mEncoder->frame_size; }

    /// Writes `count` samples, the first of them sample `position` of the file. `samples` holds all of
    /// the plug-in's channels.
    void Write(std::span<float* const> samples, std::int64_t position, int count);

    /// Writes what the encoder still holds back.
    void Finish();

private:
    void Reserve(int count);
    void WriteUncompressed(std::span<float* const> samples, std::int64_t position, int count);
    void WritePackets();

    SampleFormat mSamples;
    std::vector<int> mChannels;
    Muxer* mMuxer;
    AvCodecContext mEncoder;
    AvFrame mFrame;
    AvPacket mPacket;
    int mStream;
    bool mUncompressed;
    std::vector<const float*> mSources;  // of a write, in the track's order
};

}  // namespace lineup
