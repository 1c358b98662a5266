#pragma once

#include <cstdint>
#include <gst/gst.h>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// The framework in this process, with the module under test among its own.
namespace test {

struct FreeGst {
    void operator()(GstObject* object) const { gst_object_unref(object); }
    void operator()(GstElement* element) const { gst_object_unref(element); }
    void operator()(GstCaps* caps) const { gst_caps_unref(caps); }
    void operator()(GstMessage* message) const { gst_message_unref(message); }
};
using Element = std::unique_ptr<GstElement, FreeGst>;
using CapsPointer = std::unique_ptr<GstCaps, FreeGst>;

/// One buffer as it came.
struct Arrival {
    std::string bytes;
    GstClockTime time = 0;
    GstClockTime duration = 0;
    bool discont = false;
    guint flags = 0;
};

/// What a pipeline gave.
struct Played {
    std::vector<Arrival> buffers;
    std::string caps;
    std::string error;  ///< empty when the end was reached

    [[nodiscard]] std::string Bytes() const;
};

/// From where to where, in nanoseconds of stream time.
struct Stretch {
    GstClockTime start = 0;
    GstClockTime stop = GST_CLOCK_TIME_NONE;
};

/// A pipeline of `description`, as gst-launch-1.0 takes it, that ends in the sink of a Player.
class Player {
public:
    explicit Player(const std::string& description);
    ~Player();
    Player(const Player&) = delete;
    Player& operator=(const Player&) = delete;

    /// Plays to the end, after a seek where one is asked for.
    [[nodiscard]] Played Play(const std::optional<Stretch>& stretch = std::nullopt);

    /// Waits until it is there.
    void SetState(GstState state);

    [[nodiscard]] GstElement& Pipeline() const { return *mPipeline; }

private:
    static void Arrive(GstElement* sink, GstBuffer* buffer, GstPad* pad, Player* player);

    Element mPipeline;
    Played mPlayed;
};

/// What a pipeline gives that is played once.
[[nodiscard]] Played PlayOnce(const std::string& description);

/// The formats, sizes and the like that an element's pad has room for, as caps.
[[nodiscard]] CapsPointer TemplateOf(const char* element);

/// The texts of a list in the first structure of `caps`.
[[nodiscard]] std::vector<std::string> NamesIn(const GstCaps& caps, const char* field);

/// Readies the framework; a test that goes past Player needs it.
void StartFramework();

}  // namespace test
