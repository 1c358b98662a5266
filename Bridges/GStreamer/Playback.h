#pragma once

#include "Bridges/GStreamer/Source.h"

#include <cstdint>
#include <gst/gst.h>
#include <memory>
#include <mutex>
#include <string>

namespace gstreamer {

/// The stretch of a source that an element is to play: where it is in it, and when its buffers begin. Thread safe.
class Playback {
public:
    explicit Playback(std::unique_ptr<Source> source) : mSource(std::move(source)) {}

    static constexpr GstClockTime kEndless = GST_CLOCK_TIME_NONE;

    void SetPlugin(const char* path);
    [[nodiscard]] std::string Plugin() const;
    void SetDuration(GstClockTime duration);
    [[nodiscard]] GstClockTime Duration() const;

    /// Runs `action` on the source, alone.
    template <class Action>
    auto With(Action action) {
        const std::scoped_lock lock(mMutex);
        return action(*mSource);
    }

    /// As Source's.
    void Open();
    void Close() noexcept;
    void Take(const GstCaps& caps);

    /// Goes on with what stream time `time` falls into.
    void Seek(GstClockTime time);

    /// Whether it is still where it was opened, at the beginning.
    [[nodiscard]] bool IsFresh() const;

    /// Has the buffer that stream time `time` falls into for its first, of whole buffers from the beginning on.
    void JoinAt(GstClockTime time);

    /// The next buffer with its times; empty when stream time `stop` (kEndless for none) or the end has come.
    [[nodiscard]] Buffer Next(GstClockTime stop);

    /// How long a buffer is; 0 before caps were taken.
    [[nodiscard]] GstClockTime BufferTime() const;

private:
    mutable std::mutex mMutex;
    std::unique_ptr<Source> mSource;
    std::string mPlugin;
    GstClockTime mDuration = kEndless;
    bool mHasCaps = false;
    bool mIsFresh = true;
    bool mIsContinuous = false;  // the next buffer follows the last one
    GstClockTime mTime = 0;      // where to go on before caps were taken
    std::int64_t mNext = 0;      // and after
};

}  // namespace gstreamer
