#pragma once

#include <lineup/Api.h>
#include "Host/Lineup/Export/Formats/EncoderTable.h"

#include <string_view>

namespace lineup {
inline namespace parts {

/// How a picture's values follow from R'G'B', by the standard that says so.
enum class ColourMatrix {
    Bt709,  ///< high definition
    Bt601,  ///< standard definition, of 625 lines and of 525; files number it as SMPTE 170M
    Jpeg,   ///< the same equation, as JPEG decoders name it: BT.470 System B, G
    Rgb,    ///< they are R'G'B' themselves
};

/// That of a picture of `height` lines in a codec.
LINEUP_API ColourMatrix MatrixFor(ColourKind colour, int height);

/// "bt709", "smpte170m", "bt470bg" or "rgb".
LINEUP_API std::string_view MatrixName(ColourMatrix matrix);

}  // namespace parts
}  // namespace lineup
