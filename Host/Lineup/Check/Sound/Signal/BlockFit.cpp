#include "Host/Lineup/Check/Sound/Signal/BlockFit.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace lineup::sound {

namespace {

constexpr std::size_t kBlockFitLanes = 8;

double Product(std::span<const float> a, std::span<const float> b) {
    std::array<float, kBlockFitLanes> sums{};
    const std::size_t whole = a.size() / kBlockFitLanes * kBlockFitLanes;
    for (std::size_t n = 0; n < whole; n += kBlockFitLanes) {
        for (std::size_t i = 0; i < kBlockFitLanes; ++i) {
            sums[i] += a[n + i] * b[n + i];
        }
    }
    double sum = 0;
    for (const float lane : sums) {
        sum += static_cast<double>(lane);
    }
    for (std::size_t n = whole; n < a.size(); ++n) {
        sum += static_cast<double>(a[n]) * static_cast<double>(b[n]);
    }
    return sum;
}

// Gauss and Jordan; the matrices here are small, symmetric and far from singular.
std::vector<std::vector<double>> Inverse(std::vector<std::vector<double>> matrix) {
    const std::size_t size = matrix.size();
    std::vector<std::vector<double>> inverse(size, std::vector<double>(size));
    for (std::size_t i = 0; i < size; ++i) {
        inverse[i][i] = 1;
    }
    for (std::size_t i = 0; i < size; ++i) {
        const double pivot = matrix[i][i];
        for (std::size_t k = 0; k < size; ++k) {
            matrix[i][k] /= pivot;
            inverse[i][k] /= pivot;
        }
        for (std::size_t row = 0; row < size; ++row) {
            const double factor = row == i ? 0 : matrix[row][i];
            for (std::size_t k = 0; k < size; ++k) {
                matrix[row][k] -= factor * matrix[i][k];
                inverse[row][k] -= factor * inverse[i][k];
            }
        }
    }
    return inverse;
}

void Subtract(std::span<float> rest, std::span<const float> function, double weight) {
    const auto factor = static_cast<float>(weight);
    for (std::size_t n = 0; n < rest.size(); ++n) {
        rest[n] -= factor * function[n];
    }
}

}  // namespace

BlockFit::BlockFit(std::vector<double> omegas, std::size_t length) : mOmegas(std::move(omegas)), mLength(length) {
    mEven.functions.emplace_back(length, 1.0F);
    const double middle = (static_cast<double>(length) - 1) / 2;
    for (const double omega : mOmegas) {
        std::vector<float> sine(length);
        std::vector<float> cosine(length);
        for (std::size_t n = 0; n < length; ++n) {
            const double angle = omega * (static_cast<double>(n) - middle);
            sine[n] = static_cast<float>(std::sin(angle));
            cosine[n] = static_cast<float>(std::cos(angle));
        }
        mOdd.functions.push_back(std::move(sine));
        mEven.functions.push_back(std::move(cosine));
    }
    mOdd.Solve();
    mEven.Solve();
}

void BlockFit::Half::Solve() {
    std::vector<std::vector<double>> products(functions.size(), std::vector<double>(functions.size()));
    for (std::size_t i = 0; i < functions.size(); ++i) {
        for (std::size_t k = 0; k < functions.size(); ++k) {
            for (std::size_t n = 0; n < functions[i].size(); ++n) {
                products[i][k] += static_cast<double>(functions[i][n]) * static_cast<double>(functions[k][n]);
            }
        }
    }
    inverse = Inverse(std::move(products));
}

std::vector<double> BlockFit::Half::Weights(std::span<const float> samples) const {
    std::vector<double> products(functions.size());
    for (std::size_t i = 0; i < functions.size(); ++i) {
        products[i] = Product(samples, functions[i]);
    }
    std::vector<double> weights(functions.size());
    for (std::size_t i = 0; i < functions.size(); ++i) {
        for (std::size_t k = 0; k < functions.size(); ++k) {
            weights[i] += inverse[i][k] * products[k];
        }
    }
    return weights;
}

BlockSound BlockFit::Fit(std::span<const float> samples, std::span<std::complex<double>> gains) const {
    const std::vector<double> odd = mOdd.Weights(samples);
    const std::vector<double> even = mEven.Weights(samples);
    std::vector<float> rest(samples.begin(), samples.end());
    Subtract(rest, mEven.functions[0], even[0]);
    for (std::size_t m = 0; m < mOmegas.size(); ++m) {
        gains[m] = {odd[m], even[m + 1]};
        Subtract(rest, mOdd.functions[m], odd[m]);
        Subtract(rest, mEven.functions[m + 1], even[m + 1]);
    }
    BlockSound sound{even[0], Product(rest, rest) / static_cast<double>(rest.size()), 0, 0};
    const auto top = std::ranges::max_element(rest, {}, [](float x) { return std::abs(x); });
    sound.peak = static_cast<double>(std::abs(*top));
    sound.peakAt = static_cast<std::size_t>(top - rest.begin());
    return sound;
}

}  // namespace lineup::sound
