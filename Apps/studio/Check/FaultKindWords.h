#pragma once

#include <lineup/CheckReport.h>

#include <QString>
#include <span>

namespace studio {

/// What a window calls a kind of fault.
struct FaultKindWord {
    const char* id;
    lineup::CheckPart part;
    const char* words;  ///< of the context "Fault"
};

/// One for each of lineup::CheckFaultKinds().
[[nodiscard]] std::span<const FaultKindWord> FaultKindTable();

/// "samples", "pixels": a unit in the language in use.
[[nodiscard]] QString UnitWords(const std::string& unit);

}  // namespace studio
