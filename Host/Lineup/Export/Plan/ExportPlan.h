#pragma once

#include <lineup/ChannelLayout.h>
#include <lineup/Clip.h>
#include <lineup/ExportSettings.h>
#include <lineup/FormatTable.h>

#include <cstdint>

namespace lineup {

/// Settings that were checked, with everything that follows from them.
struct ExportPlan {
    const FileFormat* format = nullptr;
    const VideoCodec* video = nullptr;  ///< null: no picture
    const AudioCodec* audio = nullptr;  ///< null: no sound
    const ChannelLayout* channels = nullptr;
    bool monoTracks = false;
    int sampleRateHz = 0;
    std::int64_t frames = 0;   ///< 0 without picture
    std::int64_t samples = 0;  ///< 0 without sound
};

/// Throws UsageError (option "size") when the codec has no pictures of this size.
void CheckPictureSize(const VideoCodec& codec, int width, int height);

/// Throws UsageError when the settings cannot be exported from the clip.
ExportPlan PlanExport(const Clip& clip, const ExportSettings& settings);

}  // namespace lineup
