#pragma once

#include "Apps/lineup/Reports/CheckTable.h"

namespace cli {

/// How far a patch may be off before a table says so, 8-bit codes.
inline constexpr double kPatchOff = 2;

/// The farthest that one of a patch's codes is off.
[[nodiscard]] double PatchOff(const lineup::PatchReport& patch);

/// The patches of the card, a row each, with their codes; those that are off alone unless `all`.
[[nodiscard]] CheckTable MakePatchTable(const lineup::CheckReport& report, bool all);

}  // namespace cli
