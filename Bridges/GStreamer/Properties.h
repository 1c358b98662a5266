#pragma once

#include <gst/gst.h>

/// What all elements' properties have in common.
namespace gstreamer {

/// A property that takes effect when its element is started.
inline constexpr auto kReadWrite =
    static_cast<GParamFlags>(G_PARAM_READWRITE | G_PARAM_STATIC_STRINGS | GST_PARAM_MUTABLE_READY);

/// One that takes effect with the next buffer while its element plays.
inline constexpr auto kWhilePlaying =
    static_cast<GParamFlags>(G_PARAM_READWRITE | G_PARAM_STATIC_STRINGS | GST_PARAM_MUTABLE_PLAYING);

inline void InstallProperty(GObjectClass& type, guint number, GParamSpec* spec) {
    g_object_class_install_property(&type, number, spec);
}

/// Which sound: 0 is the steady tone, 1 and up the idents in the order of lineup::Idents().
[[nodiscard]] GType SoundEnum();

/// A lineup::Card.
[[nodiscard]] GType CardEnum();

}  // namespace gstreamer
