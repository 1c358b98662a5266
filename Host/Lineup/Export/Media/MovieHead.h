#pragma once

#include <cstdint>
#include <vector>

namespace lineup {

/// Takes the tracks of a movie's head, the atom "moov", out of their groups of alternatives: all play.
void LeaveTrackGroups(std::vector<std::uint8_t>& head);

/// Says in a movie's head, the atom "moov", which part of its picture is to be shown: `width` x `height` pixels in the
/// middle. What it said before is replaced. Throws Error when there is no picture track in it.
void SetCleanAperture(std::vector<std::uint8_t>& head, int width, int height);

}  // namespace lineup
