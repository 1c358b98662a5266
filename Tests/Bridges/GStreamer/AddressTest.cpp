// Addresses "lineup://?...", and the element that opens them.
#include "Tests/Bridges/GStreamer/Framework.h"
#include "Tests/Bridges/PlugInSound.h"

#include <gmock/gmock.h>

namespace {

using testing::HasSubstr;

// What is said of an address that no element takes; empty when one does.
std::string MistakeIn(const std::string& address) {
    test::StartFramework();
    GError* error = nullptr;
    const test::Element element(gst_element_make_from_uri(GST_URI_SRC, address.c_str(), nullptr, &error));
    std::string text;
    if (error != nullptr) {
        text = error->message;
        g_error_free(error);
    }
    return text;
}

TEST(Address, MayHaveEveryKey) {
    EXPECT_EQ(MistakeIn("lineup://"), "");
    EXPECT_EQ(MistakeIn("lineup://?ident=ebu-5.1&sample-rate=44100&sample-format=S24BE&size=720x576&rate=29.97&card=hd"
                        "&scan=tff&aspect=16:9&format=v210&live=true&duration=13.4"),
              "");
    EXPECT_EQ(MistakeIn("lineup://?frequency=440&level=-20&channels=5.1&settings=news.batn"), "");
}

TEST(Address, KeysAreAllInTheTextOfTheProperty) {
    test::StartFramework();
    const test::Element element(gst_element_factory_make("lineupsrc", nullptr));
    GParamSpec* const uri = g_object_class_find_property(G_OBJECT_GET_CLASS(element.get()), "uri");
    for (const char* const key : {" ident (", " frequency (", " sample-format (", " duration ("}) {
        EXPECT_THAT(g_param_spec_get_blurb(uri), HasSubstr(key));
    }
}

TEST(Address, NamesTheKeyThatIsWrongAndWhatWouldBeRight) {
    const std::vector<std::pair<std::string, std::string>> mistakes = {
        {"sise=1x1", "there is no key sise in an address; there are ident, frequency, level"},
        {"plugin=evil.bundle", "there is no key plugin"},
        {"ident=blitz", "ident blitz: must be tone, ebu-stereo-1000, ebu-stereo-400, ebu-5.1, blits"},
        {"frequency=0", "frequency 0: must be 1 to 192000"},
        {"level=3", "level 3: must be -300 to 0"},
        {"channels=7", "channels 7: must be 1 to 6, or mono, stereo, 5.1"},
        {"sample-rate=1", "sample-rate 1: must be 8000 to 384000 Hz"},
        {"size=1920", "size 1920: must be WIDTHxHEIGHT"},
        {"size=0x9", "size 0x9: must be WIDTHxHEIGHT, each 1 to 8192"},
        {"rate=29.9", "rate 29.9: must be frames a second"},
        {"scan=i", "scan i: must be progressive, tff, bff"},
        {"aspect=1:1&size=9x9", "aspect 1:1: must be auto, 4:3, 16:9, square"},
        {"aspect=4:3", "aspect 4:3: must be with a size"},
        {"format=UYV", "format UYV: must be one of those"},
        {"sample-format=S20LE", "sample-format S20LE: must be one of those"},
        {"live=maybe", "live maybe: must be true or false"},
        {"duration=0", "duration 0: must be seconds, more than 0"},
        {"siz%=9x9", "% must be followed by two hexadecimal digits"},
        {"size%0=9x9", "% must be followed by two hexadecimal digits"},
        {"ident%00=blits", "% must be followed by two hexadecimal digits, but not 00"},
        {"ident=blits%", "% must be followed by two hexadecimal digits"},
        {"%73ise=1x1", "there is no key sise"},
    };
    for (const auto& [address, text] : mistakes) {
        EXPECT_THAT(MistakeIn("lineup://?" + address), HasSubstr(text));
    }
    EXPECT_THAT(MistakeIn("lineup://blits"), HasSubstr("must be lineup://?KEY=VALUE"));
    EXPECT_THAT(test::PlayOnce("lineupsrc uri=lineup://?sise=1").error, HasSubstr("there is no key sise"));
}

TEST(Address, IsOpenedByAnyPlayer) {
    for (const char* const player : {"uridecodebin", "lineupsrc"}) {
        const auto played =
            test::PlayOnce(player + std::string(" uri=lineup://?ident=blits&size=64x36&duration=1 name=s "
                                                "s. ! video/x-raw ! fakesink sync=false s. ! audio/x-raw ! queue"));
        EXPECT_EQ(played.error, "") << player;
        EXPECT_EQ(test::Difference(test::PlanesOf(played.Bytes(), 6),
                                   test::PlugInSound(test::IdentSettings(lineup::BLITS5_1), 0, 48000)),
                  "");
    }
}

// A player that chooses among a stream's parts itself. It takes picture and sound as they come, so that nothing of the
// framework's but the player is needed. By the clock: a stream that ends before all sinks are there is one that the
// framework's players wait on for ever now and then.
TEST(Address, IsPlayedToItsEndByAPlayerThatChoosesStreams) {
    test::StartFramework();
    const test::Element player(
        gst_parse_launch("playbin3 flags=0x63 uri=lineup://?ident=blits&size=64x36&duration=0.3", nullptr));
    ASSERT_NE(player, nullptr);
    for (const char* const kind : {"video-sink", "audio-sink"}) {
        GstElement* const sink = gst_element_factory_make("fakesink", nullptr);
        g_object_set(sink, "sync", TRUE, nullptr);
        g_object_set(player.get(), kind, sink, nullptr);
    }
    gst_element_set_state(player.get(), GST_STATE_PLAYING);
    GstBus* const bus = gst_element_get_bus(player.get());
    const std::unique_ptr<GstMessage, test::FreeGst> end(gst_bus_timed_pop_filtered(
        bus, 60 * GST_SECOND, static_cast<GstMessageType>(GST_MESSAGE_EOS | GST_MESSAGE_ERROR)));
    gst_object_unref(bus);
    gint64 length = 0;
    gst_element_query_duration(player.get(), GST_FORMAT_TIME, &length);
    gst_element_set_state(player.get(), GST_STATE_NULL);
    ASSERT_NE(end, nullptr) << "it does not end";
    EXPECT_EQ(GST_MESSAGE_TYPE(end.get()), GST_MESSAGE_EOS);
    EXPECT_EQ(length, 300 * GST_MSECOND);
}

TEST(Address, SaysWhatThePictureIs) {
    const auto played = test::PlayOnce(
        "lineupsrc uri=lineup://?size=720x576&aspect=16:9&scan=bff&rate=29.97&format=v210&duration=0.1 name=s "
        "s.audio ! fakesink sync=false s.video ! queue");
    EXPECT_THAT(played.caps, testing::AllOf(HasSubstr("format=(string)v210"), HasSubstr("width=(int)720"),
                                            HasSubstr("framerate=(fraction)30000/1001"),
                                            HasSubstr("field-order=(string)bottom-field-first"),
                                            HasSubstr("pixel-aspect-ratio=(fraction)16/11")));
    EXPECT_EQ(played.buffers.size(), 3U);
}

TEST(Address, ThatFollowsAnotherForgetsIt) {
    test::StartFramework();
    const test::Element element(gst_element_factory_make("lineupsrc", nullptr));
    for (const char* const address : {"lineup://?ident=blits&card=sd&live=true", "lineup://"}) {
        g_object_set(element.get(), "uri", address, nullptr);
    }
    gint ident = -1;
    gint card = -1;
    gboolean live = TRUE;
    gst_child_proxy_get(GST_CHILD_PROXY(element.get()), "audio::ident", &ident, "video::card", &card, "audio::is-live",
                        &live, nullptr);
    EXPECT_EQ(ident, 0);
    EXPECT_EQ(card, 0);
    EXPECT_EQ(live, FALSE);
}

}  // namespace
