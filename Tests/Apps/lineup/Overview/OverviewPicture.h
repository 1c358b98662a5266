#pragma once

#include "Apps/lineup/Overview/OverviewDrawing.h"

#include <cairo.h>
#include <cstdint>
#include <cstring>
#include <memory>
#include <vector>

namespace test {

/// An overview drawn on an image, to be looked at pixel by pixel.
class OverviewPicture {
public:
    OverviewPicture(const lineup::WaveformOverview& overview, const cli::OverviewHeading& heading,
                    const cli::OverviewLayout& layout, const cli::OverviewTheme& theme)
        : mSurface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, layout.Width(), layout.Height()),
                   &cairo_surface_destroy) {
        const std::unique_ptr<cairo_t, void (*)(cairo_t*)> context(cairo_create(mSurface.get()), &cairo_destroy);
        mLabels = cli::DrawOverview(context.get(), overview, heading, layout, theme);
        cairo_surface_flush(mSurface.get());
    }

    [[nodiscard]] const std::vector<cli::Label>& Labels() const { return mLabels; }

    /// The colour of the pixel that holds the point.
    [[nodiscard]] cli::Rgb At(double x, double y) const {
        const auto row = static_cast<std::ptrdiff_t>(y) * cairo_image_surface_get_stride(mSurface.get());
        std::uint32_t pixel = 0;
        std::memcpy(&pixel, cairo_image_surface_get_data(mSurface.get()) + row + 4 * static_cast<std::ptrdiff_t>(x),
                    sizeof pixel);
        return pixel & 0xFFFFFFU;
    }

private:
    std::unique_ptr<cairo_surface_t, void (*)(cairo_surface_t*)> mSurface;
    std::vector<cli::Label> mLabels;
};

}  // namespace test
