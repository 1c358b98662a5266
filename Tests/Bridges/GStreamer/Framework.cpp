#include "Tests/Bridges/GStreamer/Framework.h"

#include <cstdlib>
#include <stdexcept>

namespace test {

void StartFramework() {
    static const bool started = [] {
        setenv("GST_PLUGIN_SYSTEM_PATH_1_0", "", 1);
        setenv("GST_PLUGIN_PATH_1_0", TEST_GSTREAMER_PLUGINS, 1);
        setenv("GST_REGISTRY_1_0", TEST_GSTREAMER_PLUGINS "/registry.bin", 1);
        setenv("GST_REGISTRY_FORK", "no", 1);
        gst_init(nullptr, nullptr);
        return true;
    }();
    (void)started;
}

std::string Played::Bytes() const {
    std::string all;
    for (const Arrival& buffer : buffers) {
        all += buffer.bytes;
    }
    return all;
}

Player::Player(const std::string& description) {
    StartFramework();
    GError* error = nullptr;
    mPipeline.reset(gst_parse_launch((description + " ! fakesink name=out sync=false").c_str(), &error));
    if (error != nullptr) {
        const std::string text = error->message;
        g_error_free(error);
        throw std::runtime_error(text);
    }
    const Element sink(gst_bin_get_by_name(GST_BIN(mPipeline.get()), "out"));
    g_object_set(sink.get(), "signal-handoffs", TRUE, nullptr);
    g_signal_connect(sink.get(), "handoff", G_CALLBACK(Arrive), this);
}

Player::~Player() {
    gst_element_set_state(mPipeline.get(), GST_STATE_NULL);
}

void Player::Arrive(GstElement*, GstBuffer* buffer, GstPad* pad, Player* player) {
    GstMapInfo map{};
    gst_buffer_map(buffer, &map, GST_MAP_READ);
    player->mPlayed.buffers.push_back({std::string(reinterpret_cast<const char*>(map.data), map.size),
                                       GST_BUFFER_PTS(buffer), GST_BUFFER_DURATION(buffer),
                                       GST_BUFFER_FLAG_IS_SET(buffer, GST_BUFFER_FLAG_DISCONT) != 0,
                                       GST_BUFFER_FLAGS(buffer)});
    gst_buffer_unmap(buffer, &map);
    const CapsPointer caps(gst_pad_get_current_caps(pad));
    gchar* const text = gst_caps_to_string(caps.get());
    player->mPlayed.caps = text;
    g_free(text);
}

void Player::SetState(GstState state) {
    gst_element_set_state(mPipeline.get(), state);
    gst_element_get_state(mPipeline.get(), nullptr, nullptr, GST_CLOCK_TIME_NONE);
}

Played Player::Play(const std::optional<Stretch>& stretch) {
    mPlayed = {};
    SetState(GST_STATE_PAUSED);
    if (stretch) {
        const bool sought = gst_element_seek(mPipeline.get(), 1.0, GST_FORMAT_TIME,
                                             static_cast<GstSeekFlags>(GST_SEEK_FLAG_FLUSH | GST_SEEK_FLAG_ACCURATE),
                                             GST_SEEK_TYPE_SET, static_cast<gint64>(stretch->start), GST_SEEK_TYPE_SET,
                                             static_cast<gint64>(stretch->stop)) != FALSE;
        if (!sought) {
            throw std::runtime_error("the pipeline refused to seek");
        }
    }
    gst_element_set_state(mPipeline.get(), GST_STATE_PLAYING);
    GstBus* const bus = gst_element_get_bus(mPipeline.get());
    const std::unique_ptr<GstMessage, FreeGst> message(gst_bus_timed_pop_filtered(
        bus, GST_CLOCK_TIME_NONE, static_cast<GstMessageType>(GST_MESSAGE_EOS | GST_MESSAGE_ERROR)));
    gst_object_unref(bus);
    if (GST_MESSAGE_TYPE(message.get()) == GST_MESSAGE_ERROR) {
        GError* error = nullptr;
        gst_message_parse_error(message.get(), &error, nullptr);
        mPlayed.error = error->message;
        g_error_free(error);
    }
    return mPlayed;
}

Played PlayOnce(const std::string& description) {
    return Player(description).Play();
}

CapsPointer TemplateOf(const char* element) {
    StartFramework();
    const Element source(gst_element_factory_make(element, nullptr));
    GstPad* const pad = gst_element_get_static_pad(source.get(), "src");
    CapsPointer caps(gst_pad_get_pad_template_caps(pad));
    gst_object_unref(pad);
    return caps;
}

std::vector<std::string> NamesIn(const GstCaps& caps, const char* field) {
    const GValue* const list = gst_structure_get_value(gst_caps_get_structure(&caps, 0), field);
    std::vector<std::string> names;
    for (guint i = 0; i < gst_value_list_get_size(list); ++i) {
        names.emplace_back(g_value_get_string(gst_value_list_get_value(list, i)));
    }
    return names;
}

}  // namespace test
