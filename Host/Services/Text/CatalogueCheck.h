#pragma once

#include <vector>

namespace zelcore {

/// True when `file` is a message catalogue in the binary form of GNU gettext whose every offset and
/// length stays inside it, so that a reader can trust them.
[[nodiscard]] bool IsSoundCatalogue(const std::vector<char>& file);

}  // namespace zelcore
