#pragma once

#include "Bridges/GStreamer/Handles.h"

#include <gst/gst.h>
#include <string>
#include <utility>
#include <vector>

namespace gstreamer {

/// What an address, "lineup://?ident=blits&size=1920x1080", asks for.
struct Wanted {
    using Properties = std::vector<std::pair<std::string, std::string>>;

    Properties sound;    ///< properties of lineupaudiosrc, and their values
    Properties picture;  ///< those of lineupvideosrc
    std::string aspect;  ///< the name of the picture's shape; empty: not said
    Caps soundCaps{gst_caps_new_empty_simple("audio/x-raw")};
    Caps pictureCaps{gst_caps_new_empty_simple("video/x-raw")};
};

inline constexpr const char* kProtocol = "lineup";

/// The keys that there are, each with what it says.
[[nodiscard]] std::string KeysText();

/// Throws lineup::Error, naming it, for an unknown key, and for a value that is not a size, a rate, a layout or
/// the like. Values that a property takes as they are, are looked at by SetProperties.
[[nodiscard]] Wanted ParseAddress(const std::string& address);

/// Throws lineup::Error, naming the property and what would be right, for a value that it cannot have. Sets nothing
/// then.
void SetProperties(GstElement& element, const Wanted::Properties& properties);

/// Sets the properties that another address has set to what they are unasked.
void ResetProperties(GstElement& element, const Wanted::Properties& properties);

}  // namespace gstreamer
