#include "Apps/lineup/Overview/CairoPainter.h"
#include "Apps/lineup/Overview/OverviewSheet.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

namespace {

using lanes::Label;
using lanes::Rectangle;
using zelmediatypes::kTicksPerSecond;
using zelmediatypes::TickTime;

// The texts of a picture of lanes at -18 dBFS, as wide as they are drawn.
class Picture {
public:
    Picture(int width, int height, int lanes, double startSeconds, double lengthSeconds)
        : mPage{.values = {},
                .title = "EBU multichannel ident, 5.1, a cycle of 12 s",
                .detail = "5.1 (L R Ls Rs C LFE), 48000 Hz",
                .sheet = cli::OverviewSheet(width, height, lanes),
                .colours = lanes::LaneColours::Light()} {
        const auto ticks = [](double seconds) {
            return TickTime(std::llround(seconds * static_cast<double>(kTicksPerSecond)));
        };
        mPage.values.start = ticks(startSeconds);
        mPage.values.span.length = ticks(lengthSeconds);
        mPage.values.channels.assign(static_cast<std::size_t>(lanes), {"LFE", {0.125F, 0.0F}, {-0.125F, 0.0F}});
        static const std::unique_ptr<cairo_surface_t, void (*)(cairo_surface_t*)> surface(
            cairo_image_surface_create(CAIRO_FORMAT_RGB24, 1, 1), &cairo_surface_destroy);
        const std::unique_ptr<cairo_t, void (*)(cairo_t*)> context(cairo_create(surface.get()), &cairo_destroy);
        mLabels = cli::DrawOverview(mPage, cli::CairoMeasure(context.get())).labels;
    }

    void ExpectLabelsApartAndInside() const {
        for (std::size_t i = 0; i < mLabels.size(); ++i) {
            const Rectangle& box = mLabels[i].box;
            ASSERT_TRUE(box.x >= 0 && box.Right() <= mPage.sheet.width && box.y >= 0 &&
                        box.Bottom() <= mPage.sheet.height)
                << mLabels[i].text;
            for (std::size_t k = i + 1; k < mLabels.size(); ++k) {
                const Rectangle& other = mLabels[k].box;
                ASSERT_FALSE(box.x < other.Right() && other.x < box.Right() && box.y < other.Bottom() &&
                             other.y < box.Bottom())
                    << mLabels[i].text << " and " << mLabels[k].text;
            }
        }
    }

    [[nodiscard]] std::ptrdiff_t Times() const {
        return std::ranges::count_if(
            mLabels, [&](const Label& label) { return label.box.y > mPage.sheet.lanes.back().Bottom(); });
    }
    [[nodiscard]] std::ptrdiff_t LineUpLevels() const { return std::ranges::count(mLabels, "\u221218", &Label::text); }

private:
    cli::OverviewPage mPage;
    std::vector<Label> mLabels;
};

struct Stretch {
    double startSeconds;
    double lengthSeconds;
};

TEST(OverviewSheet, EverySizeHasTwoTimesAndTheLineUpLevelToReadByAndNoTextsThatTouch) {
    for (const int lanes : {1, 2, 6}) {
        for (const int width : {400, 530, 800, 1200, 1960, 3000, 8192}) {
            const int usual = cli::UsualOverviewHeight(width, lanes);
            for (const int height : {cli::LeastOverviewHeight(lanes), usual, 2 * usual}) {
                for (const Stretch& stretch : {Stretch{0, 13.4},
                                               {0, 0.0011},
                                               {-2.5, 61},
                                               {59.2, 1.3},
                                               {0, 3600},
                                               {45296.789, 0.02},
                                               {-3600000, 7200000}}) {
                    SCOPED_TRACE(testing::Message() << width << "x" << height << ", " << lanes << " lanes, "
                                                    << stretch.lengthSeconds << " s from " << stretch.startSeconds);
                    const Picture picture(width, height, lanes, stretch.startSeconds, stretch.lengthSeconds);
                    picture.ExpectLabelsApartAndInside();
                    EXPECT_GE(picture.Times(), 2);
                    EXPECT_EQ(picture.LineUpLevels(), lanes);
                }
            }
        }
    }
}

}  // namespace
