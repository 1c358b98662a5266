#pragma once

#include "Bridges/GStreamer/Source.h"

#include <gst/gst.h>
#include <memory>

namespace gstreamer {

/// What one of the elements is beside what all have: live or not, its clip's plug-in and length, times and seeks.
struct ElementKind {
    const char* typeName;
    void (*describe)(GstElementClass& type);  ///< adds its metadata, its pad and its source's properties
    std::unique_ptr<Source> (*newSource)();
};

/// Registers the type of an element; `kind` must stay.
[[nodiscard]] GType RegisterElement(const ElementKind& kind);

}  // namespace gstreamer
