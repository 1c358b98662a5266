#pragma once

#include <cstdio>
#include <cstdlib>

namespace fuzz {

/// Ends the process when something does not hold, so that the input is kept as a finding.
inline void Require(bool holds, const char* sentence) {
    if (!holds) {
        std::fprintf(stderr, "This does not hold: %s\n", sentence);
        std::abort();
    }
}

}  // namespace fuzz
