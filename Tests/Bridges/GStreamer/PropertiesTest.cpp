// Properties that are set while an element plays.
#include "Tests/Bridges/GStreamer/Framework.h"
#include "Tests/Bridges/PlugInSound.h"

#include <gtest/gtest.h>

#include <gst/check/gstharness.h>
#include <set>
#include <string>

namespace {

struct TearDownHarness {
    void operator()(GstHarness* harness) const { gst_harness_teardown(harness); }
};
using PlayingHarness = std::unique_ptr<GstHarness, TearDownHarness>;

std::string Pulled(GstHarness& harness) {
    GstBuffer* const buffer = gst_harness_pull(&harness);
    GstMapInfo map{};
    gst_buffer_map(buffer, &map, GST_MAP_READ);
    std::string bytes(reinterpret_cast<const char*>(map.data), map.size);
    gst_buffer_unmap(buffer, &map);
    gst_buffer_unref(buffer);
    return bytes;
}

// One buffer is made ahead: a live source holds it back until its time has come.
TEST(Properties, ChangeTheToneAndTheEndOfASourceThatPlays) {
    test::StartFramework();
    const PlayingHarness harness(gst_harness_new_parse(
        "lineupaudiosrc name=s is-live=true samplesperbuffer=480 ! capsfilter caps=audio/x-raw,rate=48000,channels=2"));
    gst_harness_use_testclock(harness.get());
    gst_harness_play(harness.get());
    GstElement* const source = gst_bin_get_by_name(GST_BIN(harness->element), "s");
    lineup::BarsAndToneInfo settings = test::Tone(2);
    EXPECT_EQ(test::Difference(test::PlanesOf(Pulled(*harness), 2), test::PlugInSound(settings, 0, 480)), "");
    EXPECT_NE(gst_harness_crank_single_clock_wait(harness.get()), FALSE);  // the second is made, and given
    EXPECT_EQ(test::Difference(test::PlanesOf(Pulled(*harness), 2), test::PlugInSound(settings, 480, 480)), "");
    EXPECT_NE(gst_harness_wait_for_clock_id_waits(harness.get(), 1, 60), FALSE);  // and so is the third
    // Of these, ident and samplesperbuffer wait for the next start.
    g_object_set(source, "frequency", 440.0, "ident", 4, "samplesperbuffer", 64, "duration", 40 * GST_MSECOND, nullptr);
    EXPECT_NE(gst_harness_crank_single_clock_wait(harness.get()), FALSE);
    EXPECT_EQ(test::Difference(test::PlanesOf(Pulled(*harness), 2), test::PlugInSound(settings, 960, 480)), "");
    settings.frequency = 440.0F;
    EXPECT_NE(gst_harness_crank_single_clock_wait(harness.get()), FALSE);
    EXPECT_EQ(test::Difference(test::PlanesOf(Pulled(*harness), 2), test::PlugInSound(settings, 1440, 480)), "");
    GstEvent* last = nullptr;
    while (last == nullptr || GST_EVENT_TYPE(last) != GST_EVENT_EOS) {
        gst_clear_event(&last);
        last = gst_harness_pull_event(harness.get());
        ASSERT_NE(last, nullptr);
    }
    gst_event_unref(last);
    gst_object_unref(source);
}

TEST(Properties, SayWhichMayChangeWhileTheSourcePlays) {
    test::StartFramework();
    const std::set<std::string> may = {"frequency", "level", "duration"};
    for (const char* const name : {"lineupaudiosrc", "lineupvideosrc"}) {
        const test::Element element(gst_element_factory_make(name, nullptr));
        for (const char* const property :
             {"ident", "frequency", "level", "settings", "samplesperbuffer", "card", "is-live", "duration", "plugin"}) {
            const GParamSpec* const spec = g_object_class_find_property(G_OBJECT_GET_CLASS(element.get()), property);
            if (spec != nullptr) {
                EXPECT_EQ((spec->flags & GST_PARAM_MUTABLE_PLAYING) != 0, may.contains(property)) << property;
                EXPECT_EQ((spec->flags & GST_PARAM_MUTABLE_READY) != 0, !may.contains(property)) << property;
            }
        }
    }
}

}  // namespace
