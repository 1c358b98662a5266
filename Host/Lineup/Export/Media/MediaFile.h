#pragma once

#include "Host/Lineup/Export/MediaEntry.h"

namespace lineup {

/// Writes picture and sound side by side into a muxer's file.
WriteFunction WriteMovieFile;

}  // namespace lineup
