#pragma once

#include "Host/Lineup/Check/Reader/Process/DecoderSettings.h"
#include "Host/Lineup/Check/Reader/Process/Descriptor.h"
#include "Host/Lineup/Check/Reader/Process/RecordingInput.h"
#include "Host/Lineup/Check/Reader/RecordingName.h"

#include <sys/types.h>

namespace lineup {

struct SpawnedDecoder {
    pid_t id = -1;
    Descriptor process;   ///< refers to the process even where its id has gone to another; none on a kernel before 5.3
    Descriptor messages;  ///< the end to read from
};

/// Starts the decoding program with nothing of this process but the recording, the pipe and those variables of the
/// environment that it needs. Throws Error when it cannot be started.
[[nodiscard]] SpawnedDecoder SpawnDecoder(const RecordingName& recording, const RecordingInput& input,
                                          const DecoderSettings& settings);

}  // namespace lineup
