#pragma once

#include "Host/Lineup/Export/Plan/ExportPlan.h"

namespace lineup {

/// What a file of this clip says of itself.
OriginPlan PlanOrigin(const Clip& clip, const ExportSettings& settings);

}  // namespace lineup
