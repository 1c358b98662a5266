#pragma once

#include "Host/Lineup/Validation/Probes/Idents.h"
#include "Tests/Support/Oracle/Tone.h"

/// What sounds when in the identification sequences: the validator's table, which is independent of the plug-in's.
namespace oracle {

using lineup::validation::Channel;
using enum lineup::validation::Channel;
using lineup::validation::Ident;
using lineup::validation::IdentOf;
using lineup::validation::kBlits;
using lineup::validation::kIdents;
using lineup::validation::kMultichannel;
using lineup::validation::kStereo1000;
using lineup::validation::kStereo400;
using lineup::validation::kTicksPerMs;
using lineup::validation::Note;

}  // namespace oracle
