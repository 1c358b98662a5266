#pragma once

#include <lineup/AudioReader.h>
#include <lineup/Clip.h>
#include <lineup/ExportReport.h>
#include "Host/Lineup/Export/Media/Muxer.h"
#include "Host/Lineup/Export/Media/SoundEncoder.h"
#include "Host/Lineup/Export/Plan/ExportPlan.h"

#include <cstdint>
#include <vector>

namespace lineup {

/// The clip's sound on its way into a file: one track of all channels, or one a channel.
class SoundTracks {
public:
    /// Opens the encoders and adds their streams to the muxer. The plan says which; the sound is the clip's
    /// from sample `startSample` on.
    SoundTracks(const Clip& clip, const ExportPlan& plan, std::int64_t startSample, Muxer& muxer);

    /// Writes at least up to sample `end` of the file, and never past the plan's last.
    void WriteUpTo(std::int64_t end);

    /// Writes what the encoders still hold back.
    void Finish();

    [[nodiscard]] std::vector<AudioReport> Report() const;

private:
    struct Track {
        SoundEncoder encoder;
        std::string title;
    };

    void AddTracks(const ExportPlan& plan, Muxer& muxer);
    void WriteBlock(int count);

    const AudioCodec* mCodec;
    AudioReader mReader;
    std::int64_t mStart;
    std::int64_t mTotal;
    int mSampleRateHz;
    std::int64_t mPosition = 0;
    int mBlockSamples = 0;
    std::vector<Track> mTracks;
    std::vector<float> mSamples;
    std::vector<float*> mChannels;
};

}  // namespace lineup
