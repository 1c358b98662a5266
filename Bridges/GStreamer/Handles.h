#pragma once

#include <gst/gst.h>
#include <memory>

/// Owners for what the framework hands out.
namespace gstreamer {

struct FreeGst {
    void operator()(GstCaps* caps) const noexcept { gst_caps_unref(caps); }
    void operator()(GstBuffer* buffer) const noexcept { gst_buffer_unref(buffer); }
    void operator()(GstUri* uri) const noexcept { gst_uri_unref(uri); }
    void operator()(GHashTable* table) const noexcept { g_hash_table_unref(table); }
    void operator()(gchar* text) const noexcept { g_free(text); }
};
using Caps = std::unique_ptr<GstCaps, FreeGst>;
using Buffer = std::unique_ptr<GstBuffer, FreeGst>;
using Uri = std::unique_ptr<GstUri, FreeGst>;
using Table = std::unique_ptr<GHashTable, FreeGst>;
using Text = std::unique_ptr<gchar, FreeGst>;

}  // namespace gstreamer
