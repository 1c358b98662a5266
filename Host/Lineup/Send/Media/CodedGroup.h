#pragma once

#include "Host/Lineup/Send/SendEntry.h"

namespace lineup {

/// As CodeGroupFunction says.
std::vector<std::vector<std::uint8_t>> CodeGroup(const Clip& clip, const PicturePlan& plan, int frames);

/// As OpenSoundCoderFunction says.
std::unique_ptr<SoundCoder> OpenSoundCoder(const SoundPlan& plan);

}  // namespace lineup
