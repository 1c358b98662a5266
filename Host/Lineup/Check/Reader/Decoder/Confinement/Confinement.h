#pragma once

#include <cstdint>

namespace lineup::decoding {

/// What is decoded, and so what the process still needs.
enum class InputKind : std::uint8_t {
    File,  ///< open already
    Pipe,  ///< open already
    Url,   ///< needs the network, and what the system says of it in files
};

/// Gives up every right that decoding does not need, for good: processes, programs, files, signals to others, and for
/// what is open already the network; memory, the processor's time, the size of files have limits. Returns what was
/// given up as bits of GivenUp: a kernel may know less than all. Descriptors above the pipe of messages
/// are closed. Built with a sanitizer it gives up nothing.
/// Call once, before a byte of the recording is read.
[[nodiscard]] std::uint32_t GiveUpRights(InputKind kind);

/// The parts of it, in the order in which they are called. Each returns whether its right was given up.
void EndWithParent();
[[nodiscard]] bool LimitResources(InputKind kind);
[[nodiscard]] bool GiveUpFiles(InputKind kind);
[[nodiscard]] bool GiveUpSystemCalls(InputKind kind);

}  // namespace lineup::decoding
