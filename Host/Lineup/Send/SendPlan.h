#pragma once

#include <lineup/Clip.h>
#include <lineup/SendSettings.h>
#include "Host/Lineup/Export/Plan/ExportPlan.h"
#include "Host/Lineup/Send/StreamCodecs.h"
#include "Host/Lineup/Send/Transport/SoundLane.h"

#include <optional>
#include <string>
#include <vector>

namespace lineup {
inline namespace parts {

struct StreamPicturePlan {
    const StreamPictureCodec* codec = nullptr;
    VideoEncoding encoding;            ///< with the group's length; `picture` points to it
    std::vector<CodecOption> options;  ///< and it to these, whose texts are those of `groupText`
    std::string groupText;
    PicturePlan picture;
    int codedFrames = 1;  ///< that are coded: a group, or two of pictures that stand alone
};

struct StreamSoundPlan {
    const StreamSoundCodec* codec = nullptr;
    SoundPlan sound;
};

/// What settings become once they were checked.
struct SendPlan {
    Rational slotRate{25, 1};
    std::optional<StreamPicturePlan> picture;
    std::optional<StreamSoundPlan> sound;
};

/// Throws UsageError when the settings cannot be sent. The plan is not to be moved or copied: it points into itself.
LINEUP_API void PlanSend(const Clip& clip, const SendSettings& settings, SendPlan& plan);

}  // namespace parts
}  // namespace lineup
