#pragma once

#include <string>

namespace lineup::decoding {

/// Keeps the last error that the FFmpeg libraries complained of, and prints nothing.
void ListenToLibraries();

/// That error, in one line; empty when there was none since the last call.
[[nodiscard]] std::string TakeComplaint();

}  // namespace lineup::decoding
