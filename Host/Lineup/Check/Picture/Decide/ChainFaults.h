#pragma once

#include <lineup/CheckReport.h>
#include "Host/Lineup/Check/Picture/Decide/Chain.h"

#include <string>
#include <vector>

namespace lineup::picture {

/// The faults that a chain stands for, one a cause. `due` is the matrix that is.
[[nodiscard]] std::vector<CheckFault> FaultsOf(const Chain& chain, const CodeScale& scale, const std::string& due);

/// The same in a few words, for those who are told of another explanation.
[[nodiscard]] std::string WordsFor(const Chain& chain, const std::string& due);

}  // namespace lineup::picture
