#pragma once

#include "Host/Lineup/Check/Reader/Decoder/Confinement/Confinement.h"
#include "Host/Lineup/Check/Reader/Protocol/MessageWriter.h"

#include <chrono>
#include <optional>
#include <string>

namespace lineup::decoding {

/// What of a recording is decoded.
struct Wanted {
    bool sound = true;
    bool picture = false;
    std::optional<double> from;  ///< s: as DecoderSettings has it
};

/// Decodes one recording, and says all there is to say of it but the greeting: its tracks, their samples, its pictures,
/// and how it ended. Throws std::system_error when nobody listens any more.
void DecodeRecording(InputKind kind, const std::string& name, std::chrono::milliseconds stall, const Wanted& wanted,
                     MessageWriter& out);

}  // namespace lineup::decoding
