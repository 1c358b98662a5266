#include "Apps/lanes/Waveform.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace lanes {

namespace {

// In units.
constexpr double kLine = 1.6;      // a wave, the edges of a band, silence
constexpr double kStripeStep = 7;  // from stripe to stripe, where data is missing
constexpr double kStripe = 1;

constexpr double kInside = 0.45;  // opacity of a band between its edges

class WaveformPen {
public:
    WaveformPen(const lineup::ChannelOverview& channel, const WaveformStyle& style, std::vector<Box>& boxes)
        : mChannel(&channel), mStyle(&style), mBoxes(&boxes) {}

    void Draw() {
        const std::size_t columns = mChannel->maxima.size();
        for (std::size_t begin = 0; begin < columns;) {
            std::size_t end = begin + 1;
            while (end < columns && IsAlike(begin, end)) {
                ++end;
            }
            DrawRun(begin, end);
            begin = end;
        }
    }

private:
    [[nodiscard]] bool IsData(std::size_t column) const {
        return !std::isnan(mChannel->maxima[column]) && !std::isnan(mChannel->minima[column]);
    }
    [[nodiscard]] bool IsAlike(std::size_t a, std::size_t b) const {
        return IsData(a) ? mChannel->maxima[a] == mChannel->maxima[b] && mChannel->minima[a] == mChannel->minima[b]
                         : !IsData(b);
    }

    [[nodiscard]] double X(std::size_t column) const {
        const double share = static_cast<double>(column) / static_cast<double>(mChannel->maxima.size());
        return std::round(mStyle->lane.x + share * mStyle->lane.width);
    }
    [[nodiscard]] double Y(float amplitude) const {
        return mStyle->lane.Middle() - mStyle->scale.Height(static_cast<double>(amplitude)) * mStyle->lane.height / 2;
    }

    void DrawRun(std::size_t begin, std::size_t end) {
        const double left = X(begin);
        const double width = X(end) - left;
        if (!IsData(begin)) {
            DrawStripes(left, left + width);
            return;
        }
        const double top = Y(mChannel->maxima[begin]);
        const double bottom = Y(mChannel->minima[begin]);
        if (mStyle->isWave) {
            const double line = kLine * mStyle->unit;
            Add(left, top - line / 2, width, bottom - top + line, 1);
        } else {
            DrawBand(left, width, std::round(top), std::round(bottom));
        }
    }

    // On whole pixels, so that its edges are sharp.
    void DrawBand(double left, double width, double top, double bottom) {
        const double line = std::max(1.0, std::round(kLine * mStyle->unit));
        if (bottom - top <= 2 * line) {  // silence, or nearly
            const double height = std::max(bottom - top, line);
            Add(left, std::round((top + bottom - height) / 2), width, height, 1);
        } else {
            Add(left, top, width, line, 1);
            Add(left, top + line, width, bottom - top - 2 * line, kInside);
            Add(left, bottom - line, width, line, 1);
        }
    }

    void Add(double left, double top, double width, double height, double opacity) {
        mBoxes->push_back({{left, top, width, height}, mStyle->colour, opacity});
    }

    // In step with the lane, so that stripes of neighbouring runs are evenly spaced.
    void DrawStripes(double left, double right) {
        const double step = std::max(2.0, std::round(kStripeStep * mStyle->unit));
        const double width = std::max(1.0, std::round(kStripe * mStyle->unit));
        const auto x = [&](int stripe) { return mStyle->lane.x + stripe * step; };
        for (int i = static_cast<int>(std::ceil((left - mStyle->lane.x) / step)); x(i) + width <= right; ++i) {
            mBoxes->push_back({{x(i), mStyle->lane.y, width, mStyle->lane.height}, mStyle->noData, 1});
        }
    }

    const lineup::ChannelOverview* mChannel;
    const WaveformStyle* mStyle;
    std::vector<Box>* mBoxes;
};

}  // namespace

void AddWaveform(const lineup::ChannelOverview& channel, const WaveformStyle& style, std::vector<Box>& boxes) {
    WaveformPen(channel, style, boxes).Draw();
}

}  // namespace lanes
