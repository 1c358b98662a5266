#pragma once

#include <lineup/CheckReport.h>
#include "Apps/studio/Views/Colour.h"
#include "Apps/studio/Views/Scope.h"
#include "Host/Lineup/Check/Reader/DecodedPicture.h"

#include <array>
#include <string_view>
#include <vector>

namespace studio {

/// How the codes of a recording's pictures stand for colours: as a player takes them, by what the file says, and by the
/// size where it says nothing.
struct CodeScale {
    int bits = 8;
    bool isFull = false;
    bool isRgb = false;
    Matrix matrix = Matrix::Bt709;

    [[nodiscard]] static CodeScale Of(const lineup::DecodedPicture& picture);
    /// Of the patches of a report, which are Y', Cb, Cr of R', G', B' too.
    [[nodiscard]] static CodeScale Of(const lineup::PictureReport& picture);

    /// `codes` are 8-bit codes with fractions: Y', Cb, Cr, or R', G', B'.
    [[nodiscard]] Ycc Colour(const std::array<float, 3>& codes) const noexcept;

    /// From a code of the picture to an 8-bit code with fractions.
    [[nodiscard]] float To8Bits() const noexcept;
};

/// The patches of the card that was found, for scopes over the whole frame.
[[nodiscard]] std::vector<ScopePatch> ScopePatches(const lineup::PictureReport& picture);

}  // namespace studio
