#pragma once

#include <QString>

namespace studio {

/// What a window says for `text`, which the library says of a problem, or for a part of it, in the language in use:
/// where the library names an option of the command line, a window names its own. A text that is not known stays as it
/// is.
[[nodiscard]] QString WindowWords(const QString& text);

}  // namespace studio
