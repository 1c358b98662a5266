#pragma once

#include <cstdint>

namespace lineup::validation {

/// The bytes that the whole process has taken from its heap and not given back.
[[nodiscard]] std::int64_t HeapBytesInUse();

}  // namespace lineup::validation
