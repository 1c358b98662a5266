#pragma once

#include "Host/Lineup/Export/Media/FfmpegHandles.h"
#include "Host/Lineup/Export/Plan/ExportPlan.h"

namespace lineup {

/// Opens the plan's encoder for one track. `globalHeaders`: headers are kept out of the packets.
AvCodecContext OpenSoundEncoder(const SoundPlan& plan, const TrackPlan& track, bool globalHeaders);

}  // namespace lineup
