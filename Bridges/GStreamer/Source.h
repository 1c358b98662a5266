#pragma once

#include "Bridges/GStreamer/Grid.h"
#include "Bridges/GStreamer/Handles.h"

#include <cstdint>
#include <gst/gst.h>
#include <memory>
#include <string>

namespace gstreamer {

/// What an element gives: frames or samples, by their numbers from the clip's beginning on. Not thread safe: its
/// element's lock guards it.
class Source {
public:
    Source() = default;
    virtual ~Source() = default;
    Source(const Source&) = delete;
    Source& operator=(const Source&) = delete;

    /// The element's own properties, by their numbers in its class.
    virtual void Set(guint property, const GValue& value) = 0;
    virtual void Get(guint property, GValue& value) const = 0;

    /// Loads the plug-in (see ImporterAt) and reads what the properties name. Throws when something of it cannot be.
    virtual void Open(const std::string& plugin) = 0;
    virtual void Close() noexcept = 0;

    /// What the properties leave to the elements behind.
    [[nodiscard]] virtual Caps Offered() const = 0;

    /// Chooses where these left something open.
    [[nodiscard]] virtual Caps Chosen(Caps caps) const = 0;

    /// Gets ready to make what `caps`, which are fixed, say. Throws when it cannot be.
    virtual void Take(const GstCaps& caps) = 0;

    /// Where the frames or samples lie, and how many go into a buffer. Both hold once caps were taken.
    [[nodiscard]] virtual Grid Units() const = 0;
    [[nodiscard]] virtual std::int64_t UnitsPerBuffer() const = 0;

    /// A buffer of numbers `first` to `first + count - 1`, at most UnitsPerBuffer(), without times.
    [[nodiscard]] virtual Buffer Make(std::int64_t first, std::int64_t count) = 0;
};

}  // namespace gstreamer
