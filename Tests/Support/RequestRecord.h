#pragma once

#include "Host/Lineup/Validation/Probes/GuardedRecord.h"

/// A request record as bytes at offsets, in guarded memory: the validator's.
namespace test {

using lineup::validation::kPlacements;
using lineup::validation::Placement;
using RequestRecord = lineup::validation::GuardedBytes;

}  // namespace test
