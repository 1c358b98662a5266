#pragma once

#include "Host/Lineup/Export/MediaEntry.h"

namespace lineup {

/// Writes the plan's sound as a Broadcast Wave file, without any media library.
WriteFunction WriteWaveFile;

}  // namespace lineup
