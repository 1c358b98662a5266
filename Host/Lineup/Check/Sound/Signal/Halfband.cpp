#include "Host/Lineup/Check/Sound/Signal/Halfband.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace lineup::sound {

namespace {

constexpr double kStopDb = 120;
constexpr std::size_t kTile = 16;  // outputs that are worked out together, in registers

// The modified Bessel function of order 0.
double BesselI0(double x) {
    double sum = 1;
    double term = 1;
    for (int k = 1; term > 1e-17 * sum; ++k) {
        const double factor = x / (2 * k);
        term *= factor * factor;
        sum += term;
    }
    return sum;
}

// A sinc under a Kaiser window that is just long enough.
std::vector<float> DesignTaps(double passband) {
    const double transition = 0.5 - 2 * passband;
    const double beta = 0.1102 * (kStopDb - 8.7);
    const auto half = static_cast<std::size_t>(std::ceil((kStopDb - 7.95) / (14.36 * transition) / 2));
    const std::size_t count = half / 2 + 1;
    const double reach = static_cast<double>(2 * count);
    std::vector<double> taps(count);
    double sum = 0;
    for (std::size_t j = 0; j < count; ++j) {
        const double n = static_cast<double>(2 * j + 1);
        const double inside = n / reach;
        const double window = BesselI0(beta * std::sqrt(1 - inside * inside)) / BesselI0(beta);
        taps[j] = (j % 2 == 0 ? 1 : -1) / (std::numbers::pi * n) * window;
        sum += taps[j];
    }
    std::vector<float> scaled(count);
    std::ranges::transform(taps, scaled.begin(), [sum](double tap) { return static_cast<float>(tap * 0.25 / sum); });
    return scaled;
}

// What the odd samples add to output m, for `kTile` outputs. `odd` points at sample 2 m + 1.
void SumOdd(const float* odd, std::span<const float> taps, std::array<float, kTile>& sums) {
    sums.fill(0);
    for (std::size_t j = 0; j < taps.size(); ++j) {
        const float* const before = odd - 1 - j;
        const float* const after = odd + j;
        for (std::size_t i = 0; i < kTile; ++i) {
            sums[i] += taps[j] * (before[i] + after[i]);
        }
    }
}

}  // namespace

Halfband::Halfband(double passband) : mTaps(DesignTaps(passband)), mOdd(mTaps.size(), 0.0F) {
    double power = 0.25;
    for (const float tap : mTaps) {
        power += 2 * static_cast<double>(tap) * static_cast<double>(tap);
    }
    // The two bands' filters weigh alike; each misses the part of the other's slope that both leave out.
    mHighWeight = (1 - power) / power;
}

void Halfband::Process(std::span<const float> input, std::vector<float>& low, std::vector<float>& high) {
    std::size_t i = 0;
    if (mNextIsOdd && !input.empty()) {
        mOdd.push_back(input[i++]);
    }
    const std::size_t pairs = (input.size() - i) / 2;
    const std::size_t evenSize = mEven.size();
    const std::size_t oddSize = mOdd.size();
    mEven.resize(evenSize + pairs);
    mOdd.resize(oddSize + pairs);
    for (std::size_t pair = 0; pair < pairs; ++pair) {
        mEven[evenSize + pair] = input[i + 2 * pair];
        mOdd[oddSize + pair] = input[i + 2 * pair + 1];
    }
    i += 2 * pairs;
    mNextIsOdd = i < input.size();
    if (mNextIsOdd) {
        mEven.push_back(input[i]);
    }
    Emit(low, high);
}

void Halfband::Emit(std::vector<float>& low, std::vector<float>& high) {
    const std::size_t taps = mTaps.size();
    const std::size_t reach = 2 * taps - 1;  // odd samples for one output
    const std::size_t ready = mOdd.size() < reach ? 0 : std::min(mEven.size(), mOdd.size() - reach + 1);
    const std::size_t count = ready / kTile * kTile;
    const std::size_t from = low.size();
    low.resize(from + count);
    high.resize(from + count);
    std::array<float, kTile> sums;
    for (std::size_t m = 0; m < count; m += kTile) {
        SumOdd(mOdd.data() + m + taps, mTaps, sums);
        for (std::size_t i = 0; i < kTile; ++i) {
            const float middle = 0.5F * mEven[m + i];
            low[from + m + i] = middle + sums[i];
            high[from + m + i] = middle - sums[i];
        }
    }
    mEven.erase(mEven.begin(), mEven.begin() + static_cast<std::ptrdiff_t>(count));
    mOdd.erase(mOdd.begin(), mOdd.begin() + static_cast<std::ptrdiff_t>(count));
}

}  // namespace lineup::sound
