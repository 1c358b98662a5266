#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <utility>

namespace lineup::picture {

/// Sums up rows of `lever` · unknowns = value, and solves them by least squares.
template <std::size_t kUnknowns>
class LeastSquares {
public:
    void Add(const std::array<double, kUnknowns>& lever, double value, double weight = 1) {
        for (std::size_t i = 0; i < kUnknowns; ++i) {
            for (std::size_t j = 0; j < kUnknowns; ++j) {
                mRows.at(i).at(j) += weight * lever.at(i) * lever.at(j);
            }
            mRows.at(i).at(kUnknowns) += weight * lever.at(i) * value;
        }
    }

    /// An unknown that the rows say nothing of is 0.
    [[nodiscard]] std::array<double, kUnknowns> Solve() const {
        auto rows = mRows;
        std::array<bool, kUnknowns> isSolved{};
        for (std::size_t column = 0; column < kUnknowns; ++column) {
            std::size_t pivot = column;
            for (std::size_t row = column; row < kUnknowns; ++row) {
                pivot = std::abs(rows.at(row).at(column)) > std::abs(rows.at(pivot).at(column)) ? row : pivot;
            }
            std::swap(rows.at(column), rows.at(pivot));
            const double lead = rows.at(column).at(column);
            isSolved.at(column) = std::abs(lead) > kNothing;
            for (std::size_t row = 0; isSolved.at(column) && row < kUnknowns; ++row) {
                const double share = row == column ? 0 : rows.at(row).at(column) / lead;
                for (std::size_t i = 0; i <= kUnknowns; ++i) {
                    rows.at(row).at(i) -= share * rows.at(column).at(i);
                }
            }
        }
        std::array<double, kUnknowns> unknowns{};
        for (std::size_t i = 0; i < kUnknowns; ++i) {
            unknowns.at(i) = isSolved.at(i) ? rows.at(i).at(kUnknowns) / rows.at(i).at(i) : 0;
        }
        return unknowns;
    }

private:
    static constexpr double kNothing = 1e-12;

    std::array<std::array<double, kUnknowns + 1>, kUnknowns> mRows{};
};

}  // namespace lineup::picture
