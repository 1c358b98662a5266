#pragma once

#include <lineup/Card.h>
#include <lineup/Rational.h>

namespace lineup {

/// The picture that goes with a clip's sound.
struct PictureFormat {
    static constexpr int kLeastSize = 2;
    static constexpr int kMostSize = 8192;

    int width = 1920;  ///< pixels, even, kLeastSize to kMostSize; so is the height
    int height = 1080;
    Card card = Card::Auto;
    Rational frameRate{25, 1};  ///< frames a second; see IsFrameRate

    bool operator==(const PictureFormat&) const = default;
};

}  // namespace lineup
