#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace lineup::sound {

/// Halves a sample rate: a linear-phase half-band filter whose output m stands where input 2 m stood. What is taken
/// away comes out too, as the high band, so that noise up there is not lost.
class Halfband {
public:
    /// `passband` is the highest frequency that must come through unchanged, in parts of the input's rate; below 0.25.
    /// It is kept to 1e-6, and what would fold onto it is 120 dB down.
    explicit Halfband(double passband);

    /// Takes any number of samples, and appends to `low` and `high` what can be worked out by now.
    void Process(std::span<const float> input, std::vector<float>& low, std::vector<float>& high);

    /// The power of the high band times this and the power of the low band make up that of white noise.
    [[nodiscard]] double HighWeight() const { return mHighWeight; }

private:
    void Emit(std::vector<float>& low, std::vector<float>& high);

    std::vector<float> mTaps;  // those at odd distances from the middle, nearest first; that of the middle is 1/2
    std::vector<float> mEven;
    std::vector<float> mOdd;  // begins mTaps.size() before the even ones
    bool mNextIsOdd = false;
    double mHighWeight = 0;
};

}  // namespace lineup::sound
