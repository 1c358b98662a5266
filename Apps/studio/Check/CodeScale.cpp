#include "Apps/studio/Check/CodeScale.h"

#include <cmath>

namespace studio {

namespace {

Matrix MatrixOfTag(std::string_view tag, int height) {
    const bool is601 = tag == "bt601" || tag == "smpte170m" || tag == "bt470bg";
    return is601 ? Matrix::Bt601 : tag == "bt709" ? Matrix::Bt709 : MatrixOfExport(height);
}

std::array<float, 3> Triple(const std::vector<double>& codes) {
    return {static_cast<float>(codes[0]), static_cast<float>(codes[1]), static_cast<float>(codes[2])};
}

// Where a patch of the card lies in the frame.
QRectF AreaOf(const lineup::PatchReport& patch, const lineup::CardPlace& place) {
    const double left = place.mirrored ? 1 - patch.right : patch.left;
    const double top = place.flipped ? 1 - patch.bottom : patch.top;
    return {place.x + left * place.width, place.y + top * place.height, (patch.right - patch.left) * place.width,
            (patch.bottom - patch.top) * place.height};
}

}  // namespace

CodeScale CodeScale::Of(const lineup::DecodedPicture& picture) {
    const lineup::decoding::Frame& head = picture.head;
    return {.bits = static_cast<int>(head.bits),
            .isFull = std::string_view(head.range.data()) == "full",
            .isRgb = (head.flags & lineup::decoding::kRgbFrame) != 0,
            .matrix = MatrixOfTag(head.matrix.data(), static_cast<int>(head.height))};
}

CodeScale CodeScale::Of(const lineup::PictureReport& picture) {
    return {.bits = picture.bits,
            .isFull = picture.tags.range == "full" && picture.codes.matrix != "rgb",
            .isRgb = false,
            .matrix = MatrixOfTag(picture.tags.matrix, picture.height)};
}

float CodeScale::To8Bits() const noexcept {
    return isRgb ? 255.0F / static_cast<float>((1U << static_cast<unsigned>(bits)) - 1U) : std::ldexp(1.0F, 8 - bits);
}

Ycc CodeScale::Colour(const std::array<float, 3>& codes) const noexcept {
    if (isRgb) {
        return ToYcc({codes[0] / 255, codes[1] / 255, codes[2] / 255}, matrix);
    }
    if (isFull) {
        const float top = 256 - std::ldexp(1.0F, 8 - bits);
        return {codes[0] / top, (codes[1] - 128) / top, (codes[2] - 128) / top};
    }
    return {(codes[0] - 16) / 219, (codes[1] - 128) / 224, (codes[2] - 128) / 224};
}

std::vector<ScopePatch> ScopePatches(const lineup::PictureReport& picture) {
    const CodeScale codes = CodeScale::Of(picture);
    const lineup::CardPlace whole{.width = static_cast<double>(picture.width),
                                  .height = static_cast<double>(picture.height)};
    const lineup::CardPlace place = picture.place.value_or(whole);
    std::vector<ScopePatch> patches;
    for (const lineup::PatchReport& patch : picture.patches) {
        if (patch.expected.size() == 3 && patch.measured.size() == 3) {
            patches.push_back({.area = AreaOf(patch, place),
                               .due = codes.Colour(Triple(patch.expected)),
                               .found = codes.Colour(Triple(patch.measured)),
                               .isOff = patch.isOff});
        }
    }
    return patches;
}

}  // namespace studio
