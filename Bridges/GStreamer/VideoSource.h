#pragma once

#include <lineup/Card.h>
#include <lineup/Clip.h>
#include "Bridges/GStreamer/Element.h"

#include <gst/video/video.h>
#include <optional>

namespace gstreamer {

/// The clip's picture, which does not change: it is drawn once, and every frame is the same memory.
class VideoSource : public Source {
public:
    /// `lineupvideosrc`.
    static const ElementKind kElement;

    /// Caps of everything that the picture of a clip can be.
    [[nodiscard]] static Caps Possible();

    void Set(guint property, const GValue& value) override;
    void Get(guint property, GValue& value) const override;
    void Open(const std::string& plugin) override;
    void Close() noexcept override;
    [[nodiscard]] Caps Offered() const override;
    [[nodiscard]] Caps Chosen(Caps caps) const override;
    void Take(const GstCaps& caps) override;
    [[nodiscard]] Grid Units() const override;
    [[nodiscard]] std::int64_t UnitsPerBuffer() const override { return 1; }
    [[nodiscard]] Buffer Make(std::int64_t first, std::int64_t count) override;

private:
    lineup::Card mCard = lineup::Card::Auto;
    std::optional<lineup::Clip> mClip;  // while it is open
    lineup::Rational mFrameRate;
    Buffer mPicture;  // once caps were taken
};

}  // namespace gstreamer
