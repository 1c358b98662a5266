#include "Host/Lineup/Export/Formats/ColourMatrix.h"

namespace lineup {
inline namespace parts {

namespace {

constexpr int kLinesOf625 = 576;

}  // namespace

ColourMatrix MatrixOfLines(int height) {
    if (height >= kFewestHdLines) {
        return ColourMatrix::Bt709;
    }
    return height == kLinesOf625 ? ColourMatrix::Bt470bg : ColourMatrix::Smpte170m;
}

ColourMatrix MatrixFor(ColourKind colour, int height) {
    switch (colour) {
        case ColourKind::Jpeg:
            return ColourMatrix::Bt470bg;
        case ColourKind::Rgb:
            return ColourMatrix::Rgb;
        case ColourKind::Video:
            break;
    }
    return MatrixOfLines(height);
}

std::string_view MatrixName(ColourMatrix matrix) {
    switch (matrix) {
        case ColourMatrix::Bt709:
            return "bt709";
        case ColourMatrix::Bt470bg:
            return "bt470bg";
        case ColourMatrix::Smpte170m:
            return "smpte170m";
        case ColourMatrix::Rgb:
            break;
    }
    return "rgb";
}

}  // namespace parts
}  // namespace lineup
