#pragma once

#include "Host/Lineup/Export/MediaEntry.h"

namespace lineup {

/// Writes the clip's picture as a PNG file.
WriteFunction WritePngFile;

}  // namespace lineup
