// Live sources, by a clock that the tests set.
#include "Tests/Bridges/GStreamer/Framework.h"

#include <gtest/gtest.h>

#include <gst/check/gstharness.h>
#include <string>

namespace {

struct TearDown {
    void operator()(GstHarness* harness) const { gst_harness_teardown(harness); }
};
using Harness = std::unique_ptr<GstHarness, TearDown>;

constexpr const char* kSound =
    "lineupaudiosrc is-live=true samplesperbuffer=480 ! capsfilter caps=audio/x-raw,rate=48000";
constexpr const char* kFrames =
    "lineupvideosrc is-live=true ! capsfilter caps=video/x-raw,width=16,height=16,framerate=30000/1001";

Harness Started(const std::string& description, GstClockTime now) {
    test::StartFramework();
    Harness harness(gst_harness_new_parse(description.c_str()));
    gst_harness_use_testclock(harness.get());
    gst_harness_set_time(harness.get(), now);
    gst_harness_play(harness.get());
    return harness;
}

void ExpectNow(GstHarness& harness, GstClockTime time) {
    GstBuffer* const buffer = gst_harness_pull(&harness);
    EXPECT_EQ(GST_BUFFER_PTS(buffer), time);
    gst_buffer_unref(buffer);
}

// The next buffer, which comes when its time has come and not before.
void ExpectNext(GstHarness& harness, GstClockTime time) {
    EXPECT_NE(gst_harness_crank_single_clock_wait(&harness), FALSE);
    EXPECT_EQ(gst_clock_get_time(GST_ELEMENT_CLOCK(harness.element)), time);
    ExpectNow(harness, time);
}

TEST(Live, GivesEachBufferWhenItBegins) {
    const Harness sound = Started(kSound, 0);
    const Harness frames = Started(kFrames, 0);
    ExpectNow(*sound, 0);
    ExpectNow(*frames, 0);
    for (GstClockTime n = 1; n < 100; ++n) {
        ExpectNext(*sound, n * 10'000'000);
        ExpectNext(*frames, n * 1001 * GST_SECOND / 30000);
    }
}

TEST(Live, JoinsTheTimeOfAPipelineThatPlays) {
    const Harness sound = Started(kSound, 10 * GST_SECOND + 200'000);  // within buffer 1000
    ExpectNow(*sound, 10 * GST_SECOND);
    ExpectNext(*sound, 10 * GST_SECOND + 10'000'000);
    const Harness frames = Started(kFrames, 10 * GST_SECOND);  // within frame 299
    ExpectNow(*frames, 299 * 1001 * GST_SECOND / 30000);
    ExpectNext(*frames, 300 * 1001 * GST_SECOND / 30000);
}

TEST(Live, HasTheLatencyOfABuffer) {
    const Harness sound = Started(kSound, GST_SECOND);
    ExpectNow(*sound, GST_SECOND);
    EXPECT_EQ(gst_harness_query_latency(sound.get()), 10'000'000U);
}

}  // namespace
