#pragma once

#include "Host/Lineup/Files/TargetFile.h"

namespace lineup {

/// Takes the tracks of a finished QuickTime movie out of their alternate groups: all play. A movie that is not as it
/// should be is left as it is. Throws Error when the file cannot be read or written.
void LeaveTrackGroups(TargetFile& file);

}  // namespace lineup
