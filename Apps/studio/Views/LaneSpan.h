#pragma once

#include <cstdint>

namespace studio {

/// Which stretch of a clip the lanes show, and where in them a sample stands. In samples of the clip and
/// pixels of a plot that begins at x = 0; the stretch begins at a whole sample and stays within the clip.
class LaneSpan {
public:
    /// Deeper than a 32nd of a sample a pixel nothing more is to be seen.
    static constexpr double kLeastSamplesPerPixel = 1.0 / 32;

    /// Shows all of a clip.
    void SetClip(std::int64_t lengthSamples);
    void SetWidth(int pixels);

    [[nodiscard]] std::int64_t Length() const noexcept { return mLength; }
    [[nodiscard]] int Width() const noexcept { return mWidth; }
    [[nodiscard]] std::int64_t Start() const noexcept { return mStart; }
    [[nodiscard]] double Visible() const noexcept { return mSamplesPerPixel * mWidth; }
    [[nodiscard]] double SamplesPerPixel() const noexcept { return mSamplesPerPixel; }
    [[nodiscard]] bool ShowsAll() const noexcept { return mShowsAll; }

    [[nodiscard]] double X(std::int64_t sample) const noexcept;
    [[nodiscard]] std::int64_t Sample(double x) const noexcept;  ///< within [0, length]

    /// Makes everything `factor` times as wide, and keeps what stands at x where it is.
    void Zoom(double factor, double x);
    void ShowAll();
    void ScrollTo(std::int64_t start);

private:
    void Settle(double start);
    [[nodiscard]] double Widest() const noexcept;

    std::int64_t mLength = 1;
    int mWidth = 1;
    std::int64_t mStart = 0;
    double mSamplesPerPixel = 1;
    bool mShowsAll = true;
};

}  // namespace studio
