#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <vector>

namespace zelcore {

/// The largest file that is read whole: far above any resource or catalogue, and nothing to a machine.
inline constexpr std::size_t kLargestSmallFileBytes = 1U << 20U;

/// The bytes of the regular file `file`; nothing when it is missing, cannot be read or it is larger
/// than kLargestSmallFileBytes. Never blocks on a pipe or a device.
[[nodiscard]] std::optional<std::vector<char>> ReadSmallFile(const std::filesystem::path& file);

}  // namespace zelcore
