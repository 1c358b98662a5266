#pragma once

#include <lineup/Clip.h>
#include <lineup/Importer.h>
#include "Host/Lineup/Check/Picture/CheckPicture.h"
#include "Host/Lineup/Picture/FloatPicture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace test {

using lineup::DecodedPicture;
using lineup::picture::PictureFindings;

inline constexpr int kWidth = 640;
inline constexpr int kHeight = 360;
inline constexpr unsigned kBits = 10;

using Codes = std::array<double, 3>;  // 8-bit, with fractions

inline const lineup::Clip& TheClip() {
    static const lineup::Clip clip(std::make_shared<lineup::Importer>(TEST_BUNDLE));
    return clip;
}

inline std::uint16_t Stored(double code) {
    return static_cast<std::uint16_t>(std::clamp(std::lround(code * 4), 0L, (1L << kBits) - 1));
}

/// The card in BT.601, which is due at this size, 4:4:4; `change` gets each pixel's codes.
inline DecodedPicture Frame(const std::function<void(Codes&)>& change = {}, lineup::Card which = lineup::Card::HD,
                            int width = kWidth, int height = kHeight) {
    const lineup::FloatPicture card = lineup::ReadPicture(TheClip(), width, height, which);
    DecodedPicture picture;
    picture.head.width = static_cast<std::uint32_t>(width);
    picture.head.height = static_cast<std::uint32_t>(height);
    picture.head.bits = kBits;
    picture.head.planes = 3;
    for (int y = 0; y < height; ++y) {
        for (std::size_t x = 0; x < picture.head.width; ++x) {
            Codes codes{16 + 219 * static_cast<double>(card.Line(0, y)[x]),
                        128 + 224 * static_cast<double>(card.Line(1, y)[x]),
                        128 + 224 * static_cast<double>(card.Line(2, y)[x])};
            if (change) {
                change(codes);
            }
            for (std::size_t plane = 0; plane < 3; ++plane) {
                picture.planes.at(plane).push_back(Stored(codes.at(plane)));
            }
        }
    }
    return picture;
}

/// A frame of this size whose pixel (x, y) is pixel (x + left, y + top) of another, black beside it.
inline DecodedPicture Window(const DecodedPicture& from, int left, int top, int width, int height) {
    DecodedPicture picture;
    picture.head = from.head;
    picture.head.width = static_cast<std::uint32_t>(width);
    picture.head.height = static_cast<std::uint32_t>(height);
    const int fromWidth = static_cast<int>(from.head.width);
    const int fromHeight = static_cast<int>(from.head.height);
    for (std::size_t plane = 0; plane < 3; ++plane) {
        for (int y = top; y < top + height; ++y) {
            for (int x = left; x < left + width; ++x) {
                const bool isInside = x >= 0 && x < fromWidth && y >= 0 && y < fromHeight;
                picture.planes.at(plane).push_back(
                    isInside ? from.planes.at(plane).at(static_cast<std::size_t>(y) * from.head.width +
                                                        static_cast<std::size_t>(x))
                             : Stored(plane == 0 ? 16 : 128));
            }
        }
    }
    return picture;
}

inline PictureFindings Examine(const std::vector<DecodedPicture>& frames, const std::string& card = "auto",
                               std::uint32_t losses = lineup::decoding::kLossless) {
    lineup::CheckSettings settings;
    settings.card = card;
    lineup::picture::PictureExaminer examiner(TheClip(), settings);
    examiner.OnFacts({.frameRate = 25, .flags = losses, .isStill = 0, .codec = {}});
    double seconds = 0;
    for (DecodedPicture frame : frames) {
        frame.head.seconds = seconds;
        seconds += 0.04;
        examiner.OnPicture(frame);
    }
    return examiner.Findings();
}

inline std::vector<std::string> IdsOf(const PictureFindings& findings) {
    std::vector<std::string> ids;
    for (const lineup::CheckFault& fault : findings.faults) {
        ids.push_back(fault.id);
    }
    return ids;
}

}  // namespace test
