#include "Apps/lineup/Reports/ReportText.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace {

lineup::ExportReport Movie() {
    lineup::ExportReport report;
    report.target = "bars.mov";
    report.container = "mov";
    report.bytes = 1234;
    report.frames = 125;
    report.samples = 240000;
    report.video = lineup::VideoReport{.codec = "prores",
                                       .pixelFormat = "yuv422p10le",
                                       .width = 720,
                                       .height = 576,
                                       .sampleAspect = {16, 15},
                                       .scan = lineup::Scan::TopFieldFirst,
                                       .frameRate = {25, 1},
                                       .colour = "BT.601 625"};
    report.audio = {{.codec = "pcm-s24",
                     .sampleFormat = "s32",
                     .sampleRateHz = 48000,
                     .channels = 2,
                     .layout = "stereo",
                     .title = "Programme"}};
    return report;
}

TEST(ReportText, SaysWhatAMovieHolds) {
    EXPECT_EQ(cli::ReportText(Movie()),
              "wrote bars.mov: mov, 5.000 s, 1234 bytes\n"
              "  picture  prores, 720x576, tff, 25 fps, BT.601 625, 125 frames\n"
              "  sound    pcm-s24, stereo (Programme), 48000 Hz, 240000 samples\n");
}

TEST(ReportText, SaysTheSameInJson) {
    const auto expected = nlohmann::json::parse(R"({
        "file": "bars.mov", "container": "mov", "seconds": 5.0, "bytes": 1234,
        "video": {"codec": "prores", "pixelFormat": "yuv422p10le", "width": 720, "height": 576, "sampleAspect": "16/15",
                  "scan": "tff", "frameRate": "25", "colour": "BT.601 625", "frames": 125},
        "audio": [{"codec": "pcm-s24", "sampleFormat": "s32", "sampleRateHz": 48000, "channels": 2, "layout": "stereo",
                   "title": "Programme", "samples": 240000}]})");
    EXPECT_EQ(nlohmann::json::parse(cli::ReportJson(Movie())), expected);
}

// 48000 / 24 samples a frame: two frames more than 236000 samples.
TEST(ReportText, SaysWhereWholeCyclesEndInsideAFrame) {
    EXPECT_TRUE(cli::ReportText(Movie(), 236000)
                    .ends_with("  cycles   236000 samples; the file is 4000 longer: it ends with a whole frame\n"));
    EXPECT_EQ(nlohmann::json::parse(cli::ReportJson(Movie(), 241000))["cycles"]["samplesBeyond"], -1000);
    EXPECT_EQ(cli::ReportText(Movie(), 240000), cli::ReportText(Movie()));
}

}  // namespace
