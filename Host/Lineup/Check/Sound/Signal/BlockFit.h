#pragma once

#include <complex>
#include <cstddef>
#include <span>
#include <vector>

namespace lineup::sound {

/// What least squares make of a block of samples.
struct BlockSound {
    double dc = 0;           ///< full scale is 1
    double residual = 0;     ///< mean square of what is neither tone nor dc
    double peak = 0;         ///< the highest of it
    std::size_t peakAt = 0;  ///< its sample in the block
};

/// Fits sines of known pitch and a constant to blocks of one length. Phases count from the middle of the block.
class BlockFit {
public:
    /// `omegas` in radians a sample, all different, and far enough apart to be told in `length` samples.
    BlockFit(std::vector<double> omegas, std::size_t length);

    [[nodiscard]] std::size_t Length() const { return mLength; }
    [[nodiscard]] std::size_t Tones() const { return mOmegas.size(); }

    /// `gains[m]` becomes the amplitude and phase of tone m: its sine is the imaginary part of
    /// gains[m] * exp(i * omegas[m] * (n - (length - 1) / 2)).
    [[nodiscard]] BlockSound Fit(std::span<const float> samples, std::span<std::complex<double>> gains) const;

private:
    // One half of the functions is odd about the middle, one is even: neither knows of the other.
    struct Half {
        std::vector<std::vector<float>> functions;
        std::vector<std::vector<double>> inverse;  // of their products with each other

        void Solve();
        [[nodiscard]] std::vector<double> Weights(std::span<const float> samples) const;
    };

    std::vector<double> mOmegas;
    std::size_t mLength;
    Half mOdd;   // sines
    Half mEven;  // the constant, cosines
};

}  // namespace lineup::sound
