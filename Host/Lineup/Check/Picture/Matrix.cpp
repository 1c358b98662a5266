#include "Host/Lineup/Check/Picture/Matrix.h"

#include <algorithm>

namespace lineup::picture {

namespace {

// ITU-R BT.601, BT.709, BT.2020 (non-constant luminance).
constexpr std::array kMatrices = {
    NamedMatrix{"bt601", 0.299, 0.114},
    NamedMatrix{"bt709", 0.2126, 0.0722},
    NamedMatrix{"bt2020", 0.2627, 0.0593},
};

}  // namespace

std::span<const NamedMatrix> NamedMatrices() {
    return kMatrices;
}

Matrix MatrixOf(double red, double blue) {
    const double green = 1 - red - blue;
    const double cb = 2 * (1 - blue);
    const double cr = 2 * (1 - red);
    return {{{red, green, blue}, {-red / cb, -green / cb, 0.5}, {0.5, -green / cr, -blue / cr}}};
}

Matrix MatrixOf(std::string_view name) {
    const auto* const found = std::ranges::find(kMatrices, name, &NamedMatrix::name);
    return found == kMatrices.end() ? Identity() : MatrixOf(found->red, found->blue);
}

Triple Multiply(const Matrix& matrix, const Triple& value) {
    Triple result{};
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column) {
            result.at(row) += matrix.at(row).at(column) * value.at(column);
        }
    }
    return result;
}

Matrix Multiply(const Matrix& one, const Matrix& other) {
    Matrix result{};
    for (std::size_t column = 0; column < 3; ++column) {
        const Triple product = Multiply(one, Triple{other[0].at(column), other[1].at(column), other[2].at(column)});
        for (std::size_t row = 0; row < 3; ++row) {
            result.at(row).at(column) = product.at(row);
        }
    }
    return result;
}

Matrix Inverse(const Matrix& m) {
    const auto minor = [&m](std::size_t row, std::size_t column) {
        const std::size_t r0 = (row + 1) % 3;
        const std::size_t r1 = (row + 2) % 3;
        const std::size_t c0 = (column + 1) % 3;
        const std::size_t c1 = (column + 2) % 3;
        return m.at(r0).at(c0) * m.at(r1).at(c1) - m.at(r0).at(c1) * m.at(r1).at(c0);
    };
    const double determinant = m[0][0] * minor(0, 0) + m[0][1] * minor(0, 1) + m[0][2] * minor(0, 2);
    Matrix result{};
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column) {
            result.at(column).at(row) = minor(row, column) / determinant;
        }
    }
    return result;
}

Matrix Identity() {
    return {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
}

}  // namespace lineup::picture
