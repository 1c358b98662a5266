#pragma once

#include "Apps/lineup/Reports/CheckTable.h"

namespace cli {

/// The patches of the card, a row each, with their codes; those that are off alone unless `all`.
[[nodiscard]] CheckTable MakePatchTable(const lineup::CheckReport& report, bool all);

}  // namespace cli
