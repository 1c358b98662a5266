#pragma once

#include <lineup/AudioReader.h>
#include <lineup/Clip.h>
#include "Host/Lineup/Export/Media/Muxer.h"
#include "Host/Lineup/Export/Media/SoundEncoder.h"
#include "Host/Lineup/Export/Plan/ExportPlan.h"

#include <cstdint>
#include <vector>

namespace lineup {

/// The clip's sound on its way into a file: one track of all channels, or one a channel.
class SoundTracks {
public:
    /// Opens the plan's encoders and adds their streams to the muxer.
    SoundTracks(const Clip& clip, const SoundPlan& plan, Muxer& muxer);

    /// Writes at least up to sample `end` of the file, and never past the plan's last.
    void WriteUpTo(std::int64_t end);

    /// Writes what the encoders still hold back.
    void Finish();

private:
    void WriteBlock(int count);

    AudioReader mReader;
    std::int64_t mStart;
    std::int64_t mTotal;
    std::int64_t mSounding;  // of them; the rest is silent
    Dither mDither;
    std::int64_t mPosition = 0;
    int mBlockSamples = 0;
    std::vector<SoundEncoder> mTracks;
    std::vector<float> mSamples;
    std::vector<float*> mChannels;
};

}  // namespace lineup
