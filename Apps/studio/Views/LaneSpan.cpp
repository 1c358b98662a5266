#include "Apps/studio/Views/LaneSpan.h"

#include <algorithm>
#include <cmath>

namespace studio {

double LaneSpan::Widest() const noexcept {
    return static_cast<double>(mLength) / mWidth;
}

void LaneSpan::Settle(double start) {
    const double widest = Widest();
    mSamplesPerPixel = std::clamp(mSamplesPerPixel, std::min(kLeastSamplesPerPixel, widest), widest);
    mShowsAll = mSamplesPerPixel >= widest;
    const auto last = static_cast<std::int64_t>(std::floor(static_cast<double>(mLength) - Visible()));
    mStart = std::clamp<std::int64_t>(std::llround(start), 0, std::max<std::int64_t>(0, last));
}

void LaneSpan::SetClip(std::int64_t lengthSamples) {
    mLength = std::max<std::int64_t>(1, lengthSamples);
    ShowAll();
}

void LaneSpan::SetWidth(int pixels) {
    const bool showedAll = mShowsAll;
    mWidth = std::max(1, pixels);
    if (showedAll) {
        ShowAll();
    } else {
        Settle(static_cast<double>(mStart));
    }
}

double LaneSpan::X(std::int64_t sample) const noexcept {
    return static_cast<double>(sample - mStart) / mSamplesPerPixel;
}

std::int64_t LaneSpan::Sample(double x) const noexcept {
    return std::clamp<std::int64_t>(mStart + std::llround(x * mSamplesPerPixel), 0, mLength);
}

void LaneSpan::Zoom(double factor, double x) {
    const double kept = static_cast<double>(mStart) + x * mSamplesPerPixel;
    mSamplesPerPixel /= factor;
    mSamplesPerPixel = std::clamp(mSamplesPerPixel, std::min(kLeastSamplesPerPixel, Widest()), Widest());
    Settle(kept - x * mSamplesPerPixel);
}

void LaneSpan::ShowAll() {
    mSamplesPerPixel = Widest();
    Settle(0);
}

void LaneSpan::ScrollTo(std::int64_t start) {
    Settle(static_cast<double>(start));
}

}  // namespace studio
