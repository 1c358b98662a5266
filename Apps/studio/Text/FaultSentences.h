#pragma once

#include <QString>

namespace studio {

/// What a check says of a fault, in the language in use; as it is where no catalogue knows the sentence.
[[nodiscard]] QString FaultSentence(const QString& text);

}  // namespace studio
