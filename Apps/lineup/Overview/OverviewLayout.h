#pragma once

namespace cli {

struct Rectangle {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
};

/// Where the parts of a waveform overview stand in a picture, in pixels. All sizes follow from one unit,
/// a pixel in a picture 1200 wide: text and lines grow with the picture, so that it reads the same
/// whether it is shown small or printed large. A low picture with many lanes takes a smaller unit.
class OverviewLayout {
public:
    static constexpr int kLeastWidth = 400;
    static constexpr int kMostWidth = 8192;
    static constexpr int kMostHeight = 8192;
    static constexpr int kUsualWidth = 1200;

    /// Width and height are within the limits, LeastHeight and so on; `lanes` is 1 or more.
    OverviewLayout(int width, int height, int lanes);

    /// The height that gives each lane 90 units or, where there are too many for that, all there is.
    [[nodiscard]] static int UsualHeight(int width, int lanes);

    /// The least height at which every lane can be read.
    [[nodiscard]] static int LeastHeight(int lanes);

    /// The columns of a picture `width` wide.
    [[nodiscard]] int PlotWidth() const { return mPlotWidth; }

    [[nodiscard]] int Width() const { return mWidth; }
    [[nodiscard]] int Height() const { return mHeight; }
    [[nodiscard]] int Lanes() const { return mLanes; }

    /// Pixels in a unit.
    [[nodiscard]] double Unit() const { return mUnit; }

    /// The lane of a channel, 0 the topmost. Its edges lie on whole pixels.
    [[nodiscard]] Rectangle Lane(int index) const;

    /// The right edge of the level labels; to the left of it is the lane's name.
    [[nodiscard]] double LevelLabelsRight() const;

    /// Where the names begin, and the title.
    [[nodiscard]] double Left() const;

private:
    int mWidth;
    int mHeight;
    int mLanes;
    double mUnit;
    int mPlotLeft;
    int mPlotWidth;
};

}  // namespace cli
