#pragma once

#include <lineup/Api.h>
#include "Host/Lineup/Files/TargetFile.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>

namespace lineup {
inline namespace parts {

/// A piece's size: large enough that a system call costs nothing, small enough for a core's cache.
inline constexpr std::size_t kPieceBytes = std::size_t{1} << 20;

/// Fills `piece`, the bytes of a file from `at` on.
using MakePiece = std::function<void(std::int64_t at, std::span<std::uint8_t> piece)>;

/// Writes a file of `bytes` bytes from its front to its end, in pieces of kPieceBytes; the last may be shorter. A few
/// threads, the caller's among them, make a piece each and write it when those before it are written: what one writes
/// still lies in its own processor's cache, and others go on making. Memory does not grow with the file.
///
/// `makerForThread` is called once on each thread, and what it returns is used on that one. `written` is told on the
/// caller's thread, now and then, how many bytes are in the file; when it throws, nothing more is written. Throws
/// what they throw, and Error when something cannot be written.
LINEUP_API void WriteInTurns(TargetFile& file, std::int64_t bytes, const std::function<MakePiece()>& makerForThread,
                             const std::function<void(std::int64_t)>& written);

}  // namespace parts
}  // namespace lineup
