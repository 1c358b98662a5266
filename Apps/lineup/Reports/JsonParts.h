#pragma once

#include <lineup/CheckReport.h>

#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <vector>

/// What the documents of a check and of a watch have in common.
namespace cli {

/// What could not be measured is null.
template <class Value>
[[nodiscard]] nlohmann::ordered_json OrNull(const std::optional<Value>& value) {
    return value ? nlohmann::ordered_json(*value) : nlohmann::ordered_json();
}
[[nodiscard]] nlohmann::ordered_json OrNull(const std::string& text);

[[nodiscard]] nlohmann::ordered_json FaultJson(const lineup::CheckFault& fault);
[[nodiscard]] nlohmann::ordered_json NotesJson(const std::vector<lineup::CheckNote>& notes);

/// One line, without its end. Names of files are bytes; bytes that are not UTF-8 are shown as such.
[[nodiscard]] std::string JsonLine(const nlohmann::ordered_json& json);

}  // namespace cli
