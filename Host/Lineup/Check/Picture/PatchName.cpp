#include "Host/Lineup/Check/Picture/PatchName.h"

#include "Host/Lineup/Check/Picture/Matrix.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace lineup::picture {

namespace {

constexpr double kNear = 0.025;  // 8-bit codes of a card are rounded

// By the components that are there: red 1, green 2, blue 4.
constexpr std::array<const char*, 8> kColourNames = {"black", "red",     "green", "yellow",
                                                     "blue",  "magenta", "cyan",  "white"};

std::string GreyName(double level) {
    if (std::abs(level) < 0.004) {
        return "black";
    }
    if (std::abs(level) < 0.06) {
        return level < 0 ? "below black" : "above black";
    }
    const double percent = std::round(level * 100);
    return fmt::format("{:g} % {}", percent, percent > 60 ? "white" : "grey");
}

}  // namespace

std::string PatchName(const Triple& rgb) {
    const auto [least, most] = std::ranges::minmax(rgb);
    if (most - least < kNear) {
        return GreyName((rgb[0] + rgb[1] + rgb[2]) / 3);
    }
    std::size_t present = 0;
    bool isPure = true;
    for (std::size_t i = 0; i < rgb.size(); ++i) {
        present |= rgb.at(i) > most / 2 ? std::size_t{1} << i : 0;
        isPure = isPure && (std::abs(rgb.at(i)) < kNear || std::abs(rgb.at(i) - most) < kNear);
    }
    if (isPure) {
        return fmt::format("{:g} % {}", std::round(most * 100), kColourNames.at(present));
    }
    const Triple ycc = Multiply(MatrixOf("bt601"), rgb);
    return ycc[1] > 0 && ycc[2] < 0 ? "-I" : ycc[1] > 0 && ycc[2] > 0 ? "+Q" : "colour";
}

}  // namespace lineup::picture
