#pragma once

#include <QString>

namespace studio {

/// What a check says of a fault, of what else it found, and of why it found nothing, in the language in use; as it is
/// where no catalogue knows the sentence.
[[nodiscard]] QString FaultSentence(const QString& text);

/// The name of a patch of the card, "75 % yellow 2", in the language in use.
[[nodiscard]] QString PatchWords(const QString& name);

}  // namespace studio
