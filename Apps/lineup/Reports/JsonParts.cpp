#include "Apps/lineup/Reports/JsonParts.h"

namespace cli {

using nlohmann::ordered_json;

ordered_json OrNull(const std::string& text) {
    return text.empty() ? ordered_json() : ordered_json(text);
}

ordered_json FaultJson(const lineup::CheckFault& fault) {
    return {{"id", fault.id},
            {"part", lineup::CheckPartName(fault.part)},
            {"inputs", fault.inputs},
            {"channels", fault.channels},
            {"measured", OrNull(fault.measured)},
            {"expected", OrNull(fault.expected)},
            {"unit", fault.unit},
            {"at", OrNull(fault.at)},
            {"text", fault.text}};
}

ordered_json NotesJson(const std::vector<lineup::CheckNote>& notes) {
    ordered_json list = ordered_json::array();
    for (const lineup::CheckNote& note : notes) {
        list.push_back({{"id", note.id}, {"part", lineup::CheckPartName(note.part)}, {"text", note.text}});
    }
    return list;
}

std::string JsonLine(const ordered_json& json) {
    return json.dump(-1, ' ', false, ordered_json::error_handler_t::replace);
}

}  // namespace cli
