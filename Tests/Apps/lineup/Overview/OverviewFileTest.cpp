#include "Apps/lineup/Overview/OverviewFile.h"

#include <boost/property_tree/ptree.hpp>
#include <boost/property_tree/xml_parser.hpp>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cairo.h>
#include <cstring>
#include <limits>
#include <memory>
#include <span>
#include <sstream>
#include <string>

namespace {

using lanes::LaneColours;
using zelmediatypes::kTicksPerSecond;
using zelmediatypes::TickTime;

// A quarter of a second from sample 24000 on, in three columns.
lineup::WaveformOverview ThreeColumns() {
    constexpr float kNothing = std::numeric_limits<float>::quiet_NaN();
    lineup::WaveformOverview overview;
    overview.span = {24000, TickTime(kTicksPerSecond / 4), 3};
    overview.start = TickTime(kTicksPerSecond / 2);
    overview.channels = {{"L", {0.125F, 0.0F, 0.5F}, {-0.125F, 0.0F, -0.5F}},
                         {"R", {0.25F, kNothing, 0.25F}, {-0.25F, kNothing, -0.25F}}};
    return overview;
}

cli::OverviewPage Page() {
    return {ThreeColumns(), "1000 Hz & more", "stereo (L R), 48000 Hz", cli::OverviewSheet(640, 300, 2),
            LaneColours::Dark()};
}

cairo_status_t Take(void* closure, unsigned char* data, unsigned int length) {
    auto& rest = *static_cast<std::span<const std::uint8_t>*>(closure);
    if (length > rest.size()) {
        return CAIRO_STATUS_READ_ERROR;
    }
    std::copy_n(rest.begin(), length, data);
    rest = rest.subspan(length);
    return CAIRO_STATUS_SUCCESS;
}

std::size_t Elements(const boost::property_tree::ptree& tree) {
    std::size_t count = tree.size();
    for (const auto& [name, child] : tree) {
        count += Elements(child);
    }
    return count;
}

TEST(OverviewFile, PngIsAPictureOfTheLayoutsSize) {
    const auto bytes = cli::OverviewPng(Page());
    std::span<const std::uint8_t> rest(bytes);
    const std::unique_ptr<cairo_surface_t, void (*)(cairo_surface_t*)> surface(
        cairo_image_surface_create_from_png_stream(&Take, &rest), &cairo_surface_destroy);
    ASSERT_EQ(cairo_surface_status(surface.get()), CAIRO_STATUS_SUCCESS);
    EXPECT_EQ(cairo_image_surface_get_width(surface.get()), 640);
    EXPECT_EQ(cairo_image_surface_get_height(surface.get()), 300);
    const auto at = [&](int x, int y) {
        std::uint32_t pixel = 0;
        std::memcpy(&pixel,
                    cairo_image_surface_get_data(surface.get()) + y * cairo_image_surface_get_stride(surface.get()) +
                        static_cast<std::ptrdiff_t>(sizeof pixel) * x,
                    sizeof pixel);
        return pixel & 0xFFFFFFU;
    };
    EXPECT_EQ(at(0, 0), LaneColours::Dark().background);
    // The first column's band has a firm edge; between its edges the lane shines through.
    const lanes::Rectangle lane = Page().sheet.lanes[0];
    const auto x = static_cast<int>(lane.x) + 40;
    const auto edge = static_cast<int>(lane.Middle() - lane.height / 2 * (66 - 18.06) / 69 + 0.5);
    EXPECT_EQ(at(x, edge - 3), LaneColours::Dark().lane);
    EXPECT_EQ(at(x, edge), LaneColours::Dark().Waveform(0));
    EXPECT_NE(at(x, edge + 3), LaneColours::Dark().Waveform(0));
    EXPECT_NE(at(x, edge + 3), LaneColours::Dark().lane);
}

TEST(OverviewFile, SvgIsWellFormedAndHasTheLayoutsSize) {
    const auto bytes = cli::OverviewSvg(Page());
    std::istringstream stream(std::string(bytes.begin(), bytes.end()));
    boost::property_tree::ptree tree;
    ASSERT_NO_THROW(boost::property_tree::read_xml(stream, tree));
    EXPECT_EQ(tree.get<std::string>("svg.<xmlattr>.viewBox"), "0 0 640 300");
    EXPECT_EQ(tree.get<std::string>("svg.<xmlattr>.width"), "640px");
    EXPECT_GT(Elements(tree), 100U);  // the outlines of every text, and the waveforms
}

TEST(OverviewFile, JsonHasTheNumbersInOrder) {
    const auto json = nlohmann::ordered_json::parse(cli::OverviewJson(ThreeColumns(), 48000.0F));
    std::vector<std::string> keys;
    for (const auto& item : json.items()) {
        keys.push_back(item.key());
    }
    EXPECT_EQ(keys, (std::vector<std::string>{"version", "sampleRateHz", "startSample", "startSeconds", "lengthSeconds",
                                              "columns", "channels"}));
    EXPECT_EQ(json["version"], 1);
    EXPECT_EQ(json["sampleRateHz"], 48000);
    EXPECT_EQ(json["startSample"], 24000);
    EXPECT_EQ(json["startSeconds"], 0.5);
    EXPECT_EQ(json["lengthSeconds"], 0.25);
    EXPECT_EQ(json["columns"], 3);
    ASSERT_EQ(json["channels"].size(), 2U);
    EXPECT_EQ(json["channels"][0]["name"], "L");
    EXPECT_EQ(json["channels"][0]["max"].dump(), "[0.125,0.0,0.5]");
    EXPECT_EQ(json["channels"][0]["min"].dump(), "[-0.125,0.0,-0.5]");
    EXPECT_EQ(json["channels"][1]["max"].dump(), "[0.25,null,0.25]");
}

}  // namespace
