#pragma once

#include <algorithm>
#include <cmath>
#include <optional>

namespace lineup {

inline namespace parts {

/// A straight line through points that come one after the other, by least squares. Keeps sums alone.
class LineFit {
public:
    void Add(double x, double y) {
        if (mCount == 0) {
            mOriginX = x;
            mOriginY = y;
        }
        const double right = x - mOriginX;
        const double up = y - mOriginY;
        ++mCount;
        mX += right;
        mY += up;
        mXX += right * right;
        mXY += right * up;
        mYY += up * up;
    }

    [[nodiscard]] double Count() const { return mCount; }

    /// Empty where one point lies above the other.
    [[nodiscard]] std::optional<double> Slope() const {
        return Spread() > 0 ? std::optional((mXY - mX * mY / mCount) / Spread()) : std::nullopt;
    }

    /// How far off the line the points lie, r.m.s. against what three or more leave free.
    [[nodiscard]] double Residue() const { return mCount < 3 ? 0 : std::sqrt(Squares() / (mCount - 2)); }

    /// The standard error of the slope.
    [[nodiscard]] double SlopeDoubt() const { return Residue() / std::sqrt(Spread()); }

private:
    [[nodiscard]] double Spread() const { return mCount > 0 ? mXX - mX * mX / mCount : 0; }
    [[nodiscard]] double Squares() const {
        const double slope = Slope().value_or(0);
        return std::max(0.0, mYY - mY * mY / mCount - slope * slope * Spread());
    }

    double mOriginX = 0;
    double mOriginY = 0;
    double mCount = 0;
    double mX = 0;
    double mY = 0;
    double mXX = 0;
    double mXY = 0;
    double mYY = 0;
};

}  // namespace parts

}  // namespace lineup
