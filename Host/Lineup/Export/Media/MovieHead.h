#pragma once

#include <lineup/Scan.h>

#include <cstdint>
#include <vector>

namespace lineup {

/// Takes the tracks of a movie's head, the atom "moov", out of their groups of alternatives: all play.
void LeaveTrackGroups(std::vector<std::uint8_t>& head);

/// Says in a movie's head, the atom "moov", which part of its picture is to be shown: `width` x `height` pixels in the
/// middle. What it said before is replaced. Throws Error when there is no picture track in it.
void SetCleanAperture(std::vector<std::uint8_t>& head, int width, int height);

/// Says how many fields the movie's pictures have, and which is first, unless the head says it already.
void AddFieldOrder(std::vector<std::uint8_t>& head, Scan scan);

/// Gives tracks of AAC and ALAC whose six channels are named one by one the tag of their data's order instead: FFmpeg 7
/// names them, in another order than the data has.
void NameCodedSurround(std::vector<std::uint8_t>& head, std::uint32_t tag);

/// Empties the tables of how long samples last, in the head of a movie whose samples are all in fragments: FFmpeg
/// has the first of a track of PCM in both places.
void ForgetSampleTimes(std::vector<std::uint8_t>& head);

}  // namespace lineup
