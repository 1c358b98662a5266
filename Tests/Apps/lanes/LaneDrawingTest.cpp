#include "Apps/lanes/LaneDrawing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace {

using lanes::Box;
using lanes::Drawing;
using lanes::LaneColours;
using lanes::Rectangle;
using testing::ElementsAre;
using zelmediatypes::kTicksPerSecond;
using zelmediatypes::TickTime;

constexpr float kNothing = std::numeric_limits<float>::quiet_NaN();

lineup::ChannelOverview Band(const std::string& name, const std::vector<float>& levels) {
    lineup::ChannelOverview channel{name, levels, levels};
    for (float& minimum : channel.minima) {
        minimum = -minimum;
    }
    return channel;
}

lineup::WaveformOverview Overview(const std::vector<lineup::ChannelOverview>& channels, double startSeconds = 0,
                                  double lengthSeconds = 10) {
    const auto ticks = [](double seconds) {
        return TickTime(std::llround(seconds * static_cast<double>(kTicksPerSecond)));
    };
    lineup::WaveformOverview overview;
    overview.start = ticks(startSeconds);
    overview.span.length = ticks(lengthSeconds);
    overview.channels = channels;
    return overview;
}

// Lanes of 1000 by 138 pixels, two a decibel, from x = 100 and y = 20 on, 150 apart; a digit is a half as wide as high.
Drawing Draw(const lineup::WaveformOverview& overview, const std::vector<std::size_t>& order = {0}, double unit = 1) {
    lanes::LaneSheet sheet;
    sheet.unit = unit;
    sheet.width = 1120;
    sheet.height = 20 + 150.0 * static_cast<double>(order.size());
    for (std::size_t i = 0; i < order.size(); ++i) {
        sheet.lanes.push_back({100, 20 + 150.0 * static_cast<double>(i), 1000, 138});
    }
    sheet.levelsRight = 90;
    sheet.timesY = 10;
    sheet.nameSize = sheet.levelSize = sheet.timeSize = 12;
    return DrawLanes(overview, order, sheet, LaneColours::Light(),
                     [](const std::string& text, const lanes::TextStyle& style) {
                         return style.size / 2 * static_cast<double>(text.size());
                     });
}

// What is drawn in a channel's colour at x.
std::vector<Box> Waveform(const Drawing& drawing, double x, std::size_t channel = 0) {
    std::vector<Box> boxes;
    std::ranges::copy_if(drawing.boxes, std::back_inserter(boxes), [&](const Box& box) {
        return box.colour == LaneColours::Light().Waveform(channel) && box.area.x <= x && x < box.area.Right();
    });
    return boxes;
}

// From the top of the first to the bottom of the last.
double Height(const std::vector<Box>& boxes) {
    return boxes.empty() ? 0 : boxes.back().area.Bottom() - boxes.front().area.y;
}

TEST(LaneDrawing, ALevelIsAsHighAsItsDecibels) {
    const auto drawing = Draw(Overview({Band("M", {1.0F, 0.251189F, 0.001F, 0.0F})}));
    EXPECT_EQ(Height(Waveform(drawing, 200)), 2 * 66);  // 0 dBFS
    EXPECT_EQ(Height(Waveform(drawing, 400)), 2 * 54);  // -12
    EXPECT_EQ(Height(Waveform(drawing, 700)), 2 * 6);   // -60
    EXPECT_EQ(Height(Waveform(drawing, 900)), 2);       // silence, a line
    EXPECT_EQ(Waveform(drawing, 900).front().area.Middle(), 20 + 69);
}

TEST(LaneDrawing, ABandLiesBetweenFirmEdges) {
    const auto boxes = Waveform(Draw(Overview({Band("M", {0.125F, 0.125F, 0.5F})})), 500);
    ASSERT_EQ(boxes.size(), 3U);
    EXPECT_EQ(boxes[0].opacity, 1);
    EXPECT_LT(boxes[1].opacity, 0.6);
    EXPECT_EQ(boxes[2].opacity, 1);
    EXPECT_EQ(boxes[0].area.Bottom(), boxes[1].area.y);
    EXPECT_DOUBLE_EQ(boxes[1].area.Bottom(), boxes[2].area.y);
    EXPECT_EQ(boxes[0].area.x, 100);  // both columns at once
    EXPECT_EQ(boxes[0].area.Right(), 767);
}

TEST(LaneDrawing, AColumnReachesFromItsLeastToItsGreatestValue) {
    // A column of a burst's half wave: from 0 up to -6 dBFS.
    const auto boxes = Waveform(Draw(Overview({{"M", {0.501187F}, {0.0F}}})), 500);
    EXPECT_NEAR(boxes.front().area.y, 20 + 69 - 60, 0.01);
    EXPECT_NEAR(boxes.back().area.Bottom(), 20 + 69, 0.01);
}

TEST(LaneDrawing, AWaveIsALineFromColumnToColumn) {
    std::vector<float> sine(501);
    for (std::size_t i = 0; i < sine.size(); ++i) {
        sine[i] = 0.25F * static_cast<float>(std::sin(static_cast<double>(i) * 0.0251327412));  // two cycles
    }
    lineup::ChannelOverview channel{"M", {}, {}};
    for (std::size_t i = 0; i + 1 < sine.size(); ++i) {
        channel.maxima.push_back(std::max(sine[i], sine[i + 1]));
        channel.minima.push_back(std::min(sine[i], sine[i + 1]));
    }
    auto overview = Overview({channel});
    overview.showsWave = true;
    const auto drawing = Draw(overview);
    for (std::size_t i = 0; i < 500; ++i) {
        const auto boxes = Waveform(drawing, 100 + 2.0 * static_cast<double>(i));
        ASSERT_EQ(boxes.size(), 1U);
        // 1.2 times the peak is at the lane's edge.
        EXPECT_NEAR(boxes[0].area.y, 89 - 69 * static_cast<double>(channel.maxima[i]) / 0.3 - 0.8, 0.01) << i;
        EXPECT_NEAR(boxes[0].area.Bottom(), 89 - 69 * static_cast<double>(channel.minima[i]) / 0.3 + 0.8, 0.01) << i;
    }
}

TEST(LaneDrawing, StripesStandWhereThereIsNoDataAndNowhereElse) {
    for (const int unit : {1, 3}) {
        const auto drawing = Draw(Overview({Band("L", {0.125F, kNothing})}), {0}, unit);
        int stripes = 0;
        for (const Box& box : drawing.boxes) {
            if (box.colour == LaneColours::Light().noData) {
                ++stripes;
                EXPECT_GE(box.area.x, 600);
                EXPECT_LE(box.area.Right(), 1100);
                EXPECT_EQ(box.area.width, unit);
                EXPECT_EQ(box.area.height, 138);
            }
        }
        EXPECT_NEAR(stripes, 500 / (7 * unit), 1);
        EXPECT_TRUE(Waveform(drawing, 700).empty()) << "looks like sound";
    }
}

TEST(LaneDrawing, LanesStandInTheOrderAskedFor) {
    const auto drawing = Draw(Overview({Band("L", {0.125F}), Band("C", {0.0F})}), {1, 0});
    EXPECT_EQ(Height(Waveform(drawing, 500, 1)), 2);
    EXPECT_LT(Waveform(drawing, 500, 1).front().area.y, 158);
    EXPECT_GT(Waveform(drawing, 500, 0).front().area.y, 170);
    const auto place = [&](const std::string& name) {
        return std::ranges::find(drawing.labels, name, &lanes::Label::text)->box.Middle();
    };
    EXPECT_DOUBLE_EQ(place("C"), 20 + 69);
    EXPECT_DOUBLE_EQ(place("L"), 170 + 69);
}

TEST(LaneDrawing, ALevelsNameStandsAtItsLine) {
    const auto drawing = Draw(Overview({Band("M", {0.125F})}));
    const auto label = std::ranges::find(drawing.labels, "\u221218", &lanes::Label::text);
    ASSERT_NE(label, drawing.labels.end());
    EXPECT_DOUBLE_EQ(label->box.Right(), 90);
    EXPECT_DOUBLE_EQ(label->box.Middle(), 20 + 69 - 48);
    for (const double y : {20 + 69 - 48.0, 20 + 69 + 48.0}) {
        EXPECT_TRUE(std::ranges::any_of(drawing.boxes, [&](const Box& box) {
            return box.colour == LaneColours::Light().grid && box.area.width == 1000 && std::abs(box.area.y - y) <= 1;
        })) << y;
    }
}

// The texts of the time axis, by where they stand.
std::vector<std::string> Times(double startSeconds, double lengthSeconds) {
    std::vector<std::string> texts;
    for (const lanes::Label& label : Draw(Overview({Band("M", {0.125F})}, startSeconds, lengthSeconds)).labels) {
        if (label.box.Middle() == 10) {
            texts.push_back(label.text);
        }
    }
    return texts;
}

TEST(LaneDrawing, TimesAreMarkedAlongTheWholeSpan) {
    EXPECT_THAT(Times(0, 3), ElementsAre("0.0 s", "0.2 s", "0.4 s", "0.6 s", "0.8 s", "1.0 s", "1.2 s", "1.4 s",
                                         "1.6 s", "1.8 s", "2.0 s", "2.2 s", "2.4 s", "2.6 s", "2.8 s", "3.0 s"));
    EXPECT_THAT(Times(-1, 10),
                ElementsAre("\u22121 s", "0 s", "1 s", "2 s", "3 s", "4 s", "5 s", "6 s", "7 s", "8 s", "9 s"));
    EXPECT_THAT(Times(0, 300), ElementsAre("0:00", "0:20", "0:40", "1:00", "1:20", "1:40", "2:00", "2:20", "2:40",
                                           "3:00", "3:20", "3:40", "4:00", "4:20", "4:40", "5:00"));
}

}  // namespace
