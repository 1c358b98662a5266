#pragma once

#include "Host/Lineup/Check/Picture/CardModel.h"

#include <array>
#include <span>
#include <string_view>

namespace lineup::picture {

/// m[row][column].
using Matrix = std::array<Triple, 3>;

/// A matrix between R'G'B' and Y'CbCr by the names that reports use.
struct NamedMatrix {
    std::string_view name;
    double red;  ///< its share of luma
    double blue;
};

[[nodiscard]] std::span<const NamedMatrix> NamedMatrices();

/// From R'G'B' to Y' from 0 to 1, Cb and Cr from -0.5 to 0.5. The name must be one of NamedMatrices().
[[nodiscard]] Matrix MatrixOf(std::string_view name);
[[nodiscard]] Matrix MatrixOf(double red, double blue);

[[nodiscard]] Triple Multiply(const Matrix& matrix, const Triple& value);
[[nodiscard]] Matrix Multiply(const Matrix& one, const Matrix& other);
[[nodiscard]] Matrix Inverse(const Matrix& matrix);
[[nodiscard]] Matrix Identity();

}  // namespace lineup::picture
