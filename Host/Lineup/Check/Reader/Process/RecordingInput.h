#pragma once

#include "Host/Lineup/Check/Reader/Process/Descriptor.h"
#include "Host/Lineup/Check/Reader/RecordingName.h"

namespace lineup {

/// A recording, open for reading. A URL is opened by the program that decodes it.
struct RecordingInput {
    Descriptor descriptor;  ///< not below 10, so that it is in nobody's way; nothing for a URL
    bool canSeek = false;   ///< a file, and no pipe
};

/// Throws Unreadable when it cannot be read: there is no such file, it is a folder, it is empty.
[[nodiscard]] RecordingInput OpenRecording(const RecordingName& name);

/// The same open file as `number`, as a descriptor not below 10 that programs started later do not get. Throws Error.
[[nodiscard]] Descriptor OutOfTheWay(int number);

}  // namespace lineup
