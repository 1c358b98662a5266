#pragma once

#include "Host/Lineup/Export/MediaEntry.h"

namespace lineup {

/// Writes picture and sound side by side into a muxer's file; see WriteMediaFunction.
WriteMediaFunction WriteMediaFile;

}  // namespace lineup
