#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace lineup::sound {

/// The order of 5.1 that `channels` are in, other than that of files, in words, or empty; an empty channel fits
/// anywhere.
[[nodiscard]] std::string_view NameOfOrder(const std::vector<std::string>& channels);

}  // namespace lineup::sound
