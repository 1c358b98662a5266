// Addresses come from anybody: any text is refused with a sentence, or says caps and properties that an element can
// have.
#include <lineup/Error.h>
#include "Bridges/GStreamer/UriKeys.h"
#include "Tests/Fuzz/Support/Require.h"

#include <cstddef>
#include <cstdint>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool started = gst_init_check(nullptr, nullptr, nullptr) != FALSE;
    fuzz::Require(started, "the framework starts");
    const std::string all(reinterpret_cast<const char*>(data), size);
    const std::string text = all.c_str();  // as the framework hands it over
    try {
        const gstreamer::Wanted wanted = gstreamer::ParseAddress(text);
        fuzz::Require(gst_caps_is_fixed(wanted.soundCaps.get()) != FALSE, "the sound's caps are values");
        fuzz::Require(gst_caps_is_fixed(wanted.pictureCaps.get()) != FALSE, "the picture's caps are values");
        for (const auto& [name, value] : wanted.sound) {
            fuzz::Require(name != "plugin", "no address names a plug-in");
        }
    } catch (const lineup::Error& error) {
        fuzz::Require(*error.what() != '\0', "a mistake is said");
    }
    return 0;
}
