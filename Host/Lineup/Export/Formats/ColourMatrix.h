#pragma once

#include <lineup/Api.h>
#include "Host/Lineup/Export/Formats/EncoderTable.h"

#include <string_view>

namespace lineup {
inline namespace parts {

/// How a picture's values follow from R'G'B', by the standard that says so.
enum class ColourMatrix {
    Bt709,      ///< high definition
    Bt470bg,    ///< BT.601 for 625 lines
    Smpte170m,  ///< BT.601 for 525 lines
    Rgb,        ///< they are R'G'B' themselves
};

/// That of a picture of `height` lines as television has it.
LINEUP_API ColourMatrix MatrixOfLines(int height);

/// That of a picture of `height` lines in a codec.
LINEUP_API ColourMatrix MatrixFor(ColourKind colour, int height);

/// "bt709", "bt470bg", "smpte170m" or "rgb".
LINEUP_API std::string_view MatrixName(ColourMatrix matrix);

}  // namespace parts
}  // namespace lineup
