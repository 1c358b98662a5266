#pragma once

#include "Host/Lineup/Check/Picture/Decide/Chain.h"
#include "Host/Lineup/Check/Picture/Decide/Verdict.h"

namespace lineup::picture {

/// What is gone below black and near white, where `chain` explains the rest and `scale` is not of R'G'B'.
void DecideEnds(const PictureCase& known, const Chain& chain, const CodeScale& scale, PictureFindings& findings);

}  // namespace lineup::picture
