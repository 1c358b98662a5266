#pragma once

#include <QIcon>

namespace studio {

enum class Glyph { Play, Pause, ToStart, Loop, Sound, Muted };

/// A transport symbol in the colours of the theme in use, sharp at any size; what is on is in the accent colour.
[[nodiscard]] QIcon MakeIcon(Glyph glyph);

}  // namespace studio
