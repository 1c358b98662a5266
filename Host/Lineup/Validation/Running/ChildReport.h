#pragma once

#include <lineup/Validation.h>

#include <optional>
#include <string>

namespace lineup::validation {

/// The descriptor on which a child reports.
inline constexpr int kReportDescriptor = 3;

/// The descriptor of the memory that its pending requests stand in.
inline constexpr int kBoardDescriptor = 4;

/// A finding as the bytes that a child reports with.
[[nodiscard]] std::string Encode(const Finding& finding);

/// The finding that the bytes stand for; nothing unless they are one whole report and no more.
[[nodiscard]] std::optional<Finding> Decode(const std::string& bytes);

}  // namespace lineup::validation
