#pragma once

#include "Src/ToneGenerator/Sine/SineKernels.h"

namespace sine {

/// The blocks that `samples` of them (above 0) begin, kBlock at most. Static: code of one instruction level must never
/// serve another.
[[maybe_unused]] static int BlocksOf(long long samples) {
    const long long blocks = (samples + kBlock - 1) / kBlock;
    return blocks < kBlock ? static_cast<int>(blocks) : kBlock;
}

}  // namespace sine
