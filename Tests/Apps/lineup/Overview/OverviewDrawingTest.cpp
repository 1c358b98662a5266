#include "Apps/lineup/Overview/OverviewDrawing.h"
#include "Tests/Apps/lineup/Overview/OverviewPicture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace {

using cli::Label;
using cli::OverviewLayout;
using cli::OverviewTheme;
using cli::Rectangle;
using cli::Rgb;
using test::OverviewPicture;
using zelmediatypes::kTicksPerSecond;
using zelmediatypes::TickTime;

constexpr float kNothing = std::numeric_limits<float>::quiet_NaN();

const cli::OverviewHeading kHeading{"EBU multichannel ident, 5.1, a cycle of 12 s", "5.1 (L R Ls Rs C LFE), 48000 Hz",
                                    48000.0F};

lineup::WaveformOverview Overview(const std::vector<lineup::ChannelOverview>& channels, double startSeconds = 0,
                                  double lengthSeconds = 10) {
    lineup::WaveformOverview overview;
    overview.span.startSample = std::llround(startSeconds * 48000);
    overview.span.length = TickTime(std::llround(lengthSeconds * static_cast<double>(kTicksPerSecond)));
    overview.span.columns = static_cast<int>(channels.front().maxima.size());
    overview.channels = channels;
    return overview;
}

lineup::ChannelOverview Band(const std::string& name, const std::vector<float>& levels) {
    lineup::ChannelOverview channel{name, levels, levels};
    for (float& minimum : channel.minima) {
        minimum = -minimum;
    }
    return channel;
}

// `colour` over `under`, each of their three parts within 5 of the pixel's.
bool IsBlend(Rgb pixel, Rgb colour, Rgb under, double opacity) {
    for (const unsigned shift : {0U, 8U, 16U}) {
        const auto part = [shift](Rgb value) { return static_cast<double>((value >> shift) & 0xFFU); };
        if (std::abs(part(pixel) - (opacity * part(colour) + (1 - opacity) * part(under))) > 5) {
            return false;
        }
    }
    return true;
}

// What belongs to a waveform; lanes and their lines are nearly grey.
bool IsColourful(Rgb pixel) {
    const auto [least, most] = std::minmax({pixel & 0xFFU, (pixel >> 8U) & 0xFFU, pixel >> 16U});
    return most - least > 40;
}

// The middle of column `i` of `columns`.
double X(const Rectangle& lane, int i, int columns) {
    return lane.x + lane.width * (i + 0.5) / columns;
}
int Row(double y) {
    return static_cast<int>(y);
}
double Centre(const Rectangle& lane) {
    return lane.y + lane.height / 2;
}

TEST(OverviewDrawing, FillsABandAndLeavesSilenceAThinLine) {
    // Two lanes of two columns, one loud and one silent; time lines fall on neither's middle.
    const auto overview = Overview({Band("L", {0.125F, 0.0F}), Band("R", {0.0F, 0.125F})}, 0, 10.4);
    const OverviewLayout layout(1200, OverviewLayout::UsualHeight(1200, 2), 2);
    for (const OverviewTheme* const theme : {&OverviewTheme::Light(), &OverviewTheme::Dark()}) {
        const OverviewPicture picture(overview, kHeading, layout, *theme);
        EXPECT_EQ(picture.At(1, 1), theme->background);
        for (int lane = 0; lane < 2; ++lane) {
            const Rectangle box = layout.Lane(lane);
            const Rgb colour = theme->Waveform(static_cast<std::size_t>(lane));
            const double loud = X(box, lane, 2);
            const double silent = X(box, 1 - lane, 2);
            const double within = Centre(box) - 8;  // between the centre line and -24 dBFS
            EXPECT_TRUE(IsBlend(picture.At(loud, within), colour, theme->lane, theme->bandOpacity));
            EXPECT_EQ(picture.At(silent, within), theme->lane);
            EXPECT_TRUE(
                IsBlend(picture.At(silent, Centre(box)), colour, theme->lane, 0.8));  // 1.6 pixels over two rows
        }
    }
}

TEST(OverviewDrawing, DrawsABandAsTallAsItsLevel) {
    const auto overview = Overview({Band("M", {0.125F, 0.0625F})}, 0, 10.4);
    const OverviewLayout layout(1200, 400, 1);
    const OverviewTheme& theme = OverviewTheme::Light();
    const OverviewPicture picture(overview, kHeading, layout, theme);
    const Rectangle box = layout.Lane(0);
    const auto height = [&](int column) {
        int filled = 0;
        for (int y = Row(box.y); y < Row(box.y + box.height); ++y) {
            filled += IsColourful(picture.At(X(box, column, 2), y)) ? 1 : 0;
        }
        return filled;
    };
    // The lane ends at 1.2 times the loudest peak.
    EXPECT_NEAR(height(0), box.height / 1.2, 2);
    EXPECT_NEAR(height(1), box.height / 2.4, 2);
}

TEST(OverviewDrawing, TracesALineWhereMaximumAndMinimumAreTheSame) {
    std::vector<float> sine(1000);
    for (std::size_t i = 0; i < sine.size(); ++i) {
        sine[i] = 0.25F * static_cast<float>(std::sin(static_cast<double>(i) * 0.0125663706));  // two cycles
    }
    const OverviewLayout layout(1200, OverviewLayout::UsualHeight(1200, 1), 1);
    const OverviewTheme& theme = OverviewTheme::Light();
    const OverviewPicture picture(Overview({{"M", sine, sine}}, 0, 10.4), kHeading, layout, theme);
    const Rectangle box = layout.Lane(0);
    // Column 125 is a crest: the line is at 1/1.2 of the way up, and nothing between it and the centre.
    const double crest = box.x + box.width * 0.125;
    const double top = Centre(box) - box.height / 2 / 1.2;
    EXPECT_TRUE(IsBlend(picture.At(crest, top), theme.Waveform(0), theme.lane, 1));
    EXPECT_EQ(picture.At(crest, Centre(box) - 8), theme.lane);
    EXPECT_EQ(picture.At(crest, Centre(box) + 8), theme.lane);
    // The trough of column 375, on the other side.
    EXPECT_TRUE(
        IsBlend(picture.At(box.x + box.width * 0.375, 2 * Centre(box) - top), theme.Waveform(0), theme.lane, 1));
}

TEST(OverviewDrawing, DrawsNothingOfATraceOutsideItsLane) {
    const std::vector<float> line(1000, 0.2F);
    const OverviewLayout layout(1200, OverviewLayout::UsualHeight(1200, 2), 2);
    const OverviewTheme& theme = OverviewTheme::Light();
    const OverviewPicture picture(Overview({{"L", line, line}, {"R", line, line}}), kHeading, layout, theme);
    for (int lane = 0; lane < 2; ++lane) {
        const Rectangle box = layout.Lane(lane);
        for (int y = Row(box.y); y < Row(box.y + box.height); ++y) {
            ASSERT_EQ(picture.At(box.x - 4, y), theme.background);
            ASSERT_EQ(picture.At(box.x + box.width + 4, y), theme.background);
        }
    }
}

TEST(OverviewDrawing, HatchesWhereThereIsNoData) {
    const auto overview = Overview({Band("L", {0.125F, kNothing})}, 0, 10.4);
    const OverviewLayout layout(1200, OverviewLayout::UsualHeight(1200, 1), 1);
    const OverviewTheme& theme = OverviewTheme::Light();
    const OverviewPicture picture(overview, kHeading, layout, theme);
    const Rectangle box = layout.Lane(0);
    int hatched = 0;
    int plain = 0;
    for (int i = -40; i < 40; ++i) {
        const double x = X(box, 1, 2) + i;
        const Rgb pixel = picture.At(x, Centre(box) - 8);
        plain += pixel == theme.lane ? 1 : 0;
        hatched += pixel != theme.lane ? 1 : 0;
        ASSERT_FALSE(IsBlend(picture.At(x, Centre(box)), theme.Waveform(0), theme.lane, 0.8)) << "looks like silence";
    }
    EXPECT_GT(plain, 20);
    EXPECT_GT(hatched, 15);
}

bool Overlap(const Rectangle& a, const Rectangle& b) {
    return a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + b.height && b.y < a.y + a.height;
}

void ExpectLabelsApartAndInside(const std::vector<Label>& labels, const OverviewLayout& layout) {
    for (std::size_t i = 0; i < labels.size(); ++i) {
        const Rectangle& box = labels[i].box;
        ASSERT_TRUE(box.x >= 0 && box.x + box.width <= layout.Width() && box.y >= 0 &&
                    box.y + box.height <= layout.Height())
            << labels[i].text;
        for (std::size_t k = i + 1; k < labels.size(); ++k) {
            ASSERT_FALSE(Overlap(box, labels[k].box)) << labels[i].text << " and " << labels[k].text;
        }
    }
}

struct TimeSpan {
    double startSeconds;
    double lengthSeconds;
};

TEST(OverviewDrawing, LabelsNeverOverlapNorLeaveThePicture) {
    const std::vector<lineup::ChannelOverview> six(6, Band("LFE", {0.125F, 0.0625F, 0.0F, 0.125F}));
    const std::vector<lineup::ChannelOverview> one(1, Band("M", {1.0F, 1.0F}));
    for (const auto& channels : {six, one}) {
        const int lanes = static_cast<int>(channels.size());
        for (int width = 400; width <= 3000; width += 130) {
            const int usual = OverviewLayout::UsualHeight(width, lanes);
            for (const int height : {OverviewLayout::LeastHeight(lanes), usual, 2 * usual}) {
                const OverviewLayout layout(width, height, lanes);
                for (const TimeSpan& span : {TimeSpan{0, 13.4},
                                             {0, 0.0011},
                                             {-2.5, 61},
                                             {59.2, 1.3},
                                             {0, 3600},
                                             {45296.789, 0.02},
                                             {-3600000, 7200000}}) {
                    SCOPED_TRACE(testing::Message() << width << "x" << height << ", " << lanes << " lanes, "
                                                    << span.lengthSeconds << " s from " << span.startSeconds);
                    const OverviewPicture picture(Overview(channels, span.startSeconds, span.lengthSeconds), kHeading,
                                                  layout, OverviewTheme::Light());
                    ExpectLabelsApartAndInside(picture.Labels(), layout);
                }
            }
        }
    }
}

// The labels of the time axis: those of the lowest row.
std::vector<std::string> TimeLabels(const OverviewPicture& picture, const OverviewLayout& layout) {
    const Rectangle lowest = layout.Lane(layout.Lanes() - 1);
    std::vector<std::string> texts;
    for (const Label& label : picture.Labels()) {
        if (label.box.y > lowest.y + lowest.height) {
            texts.push_back(label.text);
        }
    }
    return texts;
}

TEST(OverviewDrawing, MarksTimesAlongTheWholeSpan) {
    const OverviewLayout layout(1200, 400, 1);
    const auto labels = [&](double start, double length) {
        return TimeLabels({Overview({Band("M", {0.125F})}, start, length), kHeading, layout, OverviewTheme::Light()},
                          layout);
    };
    EXPECT_THAT(labels(0, 3),
                testing::ElementsAre("0.0 s", "0.2 s", "0.4 s", "0.6 s", "0.8 s", "1.0 s", "1.2 s", "1.4 s", "1.6 s",
                                     "1.8 s", "2.0 s", "2.2 s", "2.4 s", "2.6 s", "2.8 s", "3.0 s"));
    EXPECT_THAT(labels(-1, 10), testing::ElementsAre("\u22121 s", "0 s", "1 s", "2 s", "3 s", "4 s", "5 s", "6 s",
                                                     "7 s", "8 s", "9 s"));
    EXPECT_THAT(labels(0, 300), testing::ElementsAre("0:00", "0:20", "0:40", "1:00", "1:20", "1:40", "2:00", "2:20",
                                                     "2:40", "3:00", "3:20", "3:40", "4:00", "4:20", "4:40", "5:00"));
}

TEST(OverviewDrawing, EverySizeHasTwoTimesAndALevelToReadBy) {
    for (const int width : {400, 800, 1200, 3000, 8192}) {
        for (const int lanes : {1, 2, 6}) {
            for (const int height : {OverviewLayout::LeastHeight(lanes), OverviewLayout::UsualHeight(width, lanes)}) {
                const OverviewLayout layout(width, height, lanes);
                const std::vector<lineup::ChannelOverview> channels(static_cast<std::size_t>(lanes),
                                                                    Band("L", {0.125F}));
                const OverviewPicture picture(Overview(channels, 0, 12), kHeading, layout, OverviewTheme::Light());
                EXPECT_GE(TimeLabels(picture, layout).size(), 2U) << width << "x" << height;
                const auto levels = std::ranges::count(picture.Labels(), "\u221218", &Label::text);
                EXPECT_EQ(levels, 2 * lanes) << width << "x" << height;
            }
        }
    }
}

}  // namespace
