#pragma once

namespace cli {

/// Puts something in the place of each standard stream that the program was started without, so that no
/// file it opens becomes its output. Reading or writing such a stream fails. Call before anything is opened.
void FillStandardStreams();

/// Hands over what was printed to standard output. Throws lineup::Error when some of it did not arrive: the
/// pipe was closed, or the disk is full.
void FinishStandardOutput();

}  // namespace cli
