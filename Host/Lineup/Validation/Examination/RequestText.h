#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace lineup::validation {

/// A request as it stands in its record, in words: "selector 25, audio of 20 samples from -5 on, settings 00000000
/// 00803b47". Of settings it shows `settingsBytes` bytes, and no more than 64.
[[nodiscard]] std::string RequestText(std::int32_t selector, const void* param1, const void* param2,
                                      std::size_t settingsBytes);

}  // namespace lineup::validation
