#include "Apps/lineup/Overview/OverviewEntry.h"

#include <lineup/Error.h>
#include "Apps/lineup/Overview/CairoPainter.h"

#include <fmt/format.h>

#include <cairo-svg.h>
#include <cairo.h>
#include <memory>
#include <new>
#include <type_traits>

namespace cli {

namespace {

using Bytes = std::vector<std::uint8_t>;

struct DestroySurface {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
struct DestroyContext {
    void operator()(cairo_t* context) const { cairo_destroy(context); }
};
using Surface = std::unique_ptr<cairo_surface_t, DestroySurface>;
using Context = std::unique_ptr<cairo_t, DestroyContext>;

void Require(cairo_status_t status) {
    if (status != CAIRO_STATUS_SUCCESS) {
        throw lineup::Error(fmt::format("cannot draw the overview: {}", cairo_status_to_string(status)));
    }
}

// The drawing library is C: nothing may be thrown through it.
cairo_status_t Append(void* closure, const unsigned char* data, unsigned int length) noexcept {
    try {
        auto& bytes = *static_cast<Bytes*>(closure);
        bytes.insert(bytes.end(), data, data + length);
        return CAIRO_STATUS_SUCCESS;
    } catch (const std::bad_alloc&) {
        return CAIRO_STATUS_NO_MEMORY;
    }
}

void DrawOn(cairo_surface_t* surface, const OverviewPage& page) {
    const Context context(cairo_create(surface));
    Paint(context.get(), DrawOverview(page, CairoMeasure(context.get())));
    Require(cairo_status(context.get()));
}

Bytes Png(const OverviewPage& page) {
    const Surface surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, static_cast<int>(page.sheet.width),
                                                     static_cast<int>(page.sheet.height)));
    DrawOn(surface.get(), page);
    Bytes bytes;
    Require(cairo_surface_write_to_png_stream(surface.get(), &Append, &bytes));
    return bytes;
}

Bytes Svg(const OverviewPage& page) {
    Bytes bytes;
    const Surface surface(cairo_svg_surface_create_for_stream(&Append, &bytes, page.sheet.width, page.sheet.height));
    cairo_svg_surface_set_document_unit(surface.get(), CAIRO_SVG_UNIT_PX);
    DrawOn(surface.get(), page);
    cairo_surface_finish(surface.get());
    Require(cairo_surface_status(surface.get()));
    return bytes;
}

}  // namespace

// What the program looks up by name; everything else in this library is its own affair.
extern "C" LINEUP_API void lineupDrawOverview(OverviewPicture kind, const OverviewPage& page,
                                              std::vector<std::uint8_t>& bytes) {
    bytes = kind == OverviewPicture::Png ? Png(page) : Svg(page);
}

static_assert(std::is_same_v<decltype(lineupDrawOverview), DrawOverviewFunction>);

}  // namespace cli
