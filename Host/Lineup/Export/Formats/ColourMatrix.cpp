#include "Host/Lineup/Export/Formats/ColourMatrix.h"

#include <lineup/Card.h>

namespace lineup {
inline namespace parts {

ColourMatrix MatrixFor(ColourKind colour, int height) {
    switch (colour) {
        case ColourKind::Jpeg:
            return ColourMatrix::Jpeg;
        case ColourKind::Rgb:
            return ColourMatrix::Rgb;
        case ColourKind::Video:
            break;
    }
    return height >= kFewestHdLines ? ColourMatrix::Bt709 : ColourMatrix::Bt601;
}

std::string_view MatrixName(ColourMatrix matrix) {
    switch (matrix) {
        case ColourMatrix::Bt709:
            return "bt709";
        case ColourMatrix::Bt601:
            return "smpte170m";
        case ColourMatrix::Jpeg:
            return "bt470bg";
        case ColourMatrix::Rgb:
            break;
    }
    return "rgb";
}

}  // namespace parts
}  // namespace lineup
