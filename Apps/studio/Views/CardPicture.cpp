#include "Apps/studio/Views/CardPicture.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace studio {

namespace {

int Code8(float value) {
    return static_cast<int>(std::lround(std::clamp(value, 0.0F, 1.0F) * 255.0F));
}

QImage ToScreen(const lineup::FloatPicture& frame) {
    QImage image(frame.Width(), frame.Height(), QImage::Format_RGB32);
    for (int line = 0; line < frame.Height(); ++line) {
        const auto y = frame.Line(0, line);
        const auto cb = frame.Line(1, line);
        const auto cr = frame.Line(2, line);
        auto* const pixels = reinterpret_cast<QRgb*>(image.scanLine(line));
        for (std::size_t x = 0; x < y.size(); ++x) {
            const Rgb colour = ToRgb({y[x], cb[x], cr[x]}, Matrix::Bt601);
            pixels[x] = qRgb(Code8(colour.r), Code8(colour.g), Code8(colour.b));
        }
    }
    return image;
}

void Convert(lineup::FloatPicture& frame, Matrix matrix) {
    if (matrix == Matrix::Bt601) {
        return;
    }
    for (int line = 0; line < frame.Height(); ++line) {
        const auto y = frame.Line(0, line);
        const auto cb = frame.Line(1, line);
        const auto cr = frame.Line(2, line);
        for (std::size_t x = 0; x < y.size(); ++x) {
            const Ycc colour = ToYcc(ToRgb({y[x], cb[x], cr[x]}, Matrix::Bt601), matrix);
            y[x] = colour.y;
            cb[x] = colour.cb;
            cr[x] = colour.cr;
        }
    }
}

// The pixel shapes of 525 and 625 lines, by which their pictures are 4:3.
double PixelAspectOf(int width, int height) {
    if (width != 720) {
        return 1;
    }
    if (height == 480 || height == 486) {
        return 10.0 / 11;
    }
    return height == 576 ? 12.0 / 11 : 1;
}

}  // namespace

CardPicture::CardPicture(const lineup::Clip& clip, const lineup::PictureFormat& format, Matrix matrix)
    : mMatrix(matrix),
      mFrame(lineup::ReadPicture(clip, format.width, format.height, format.card)),
      mPixelAspect(PixelAspectOf(format.width, format.height)),
      mScreen(ToScreen(mFrame)) {
    Convert(mFrame, mMatrix);
    std::vector<float> column(static_cast<std::size_t>(mFrame.Height()));
    for (std::size_t x = 0; x < static_cast<std::size_t>(mFrame.Width()); ++x) {
        for (int line = 0; line < mFrame.Height(); ++line) {
            column[static_cast<std::size_t>(line)] = mFrame.Line(0, line)[x];
        }
        std::ranges::sort(column);
        for (auto first = column.begin(); first != column.end();) {
            const auto last = std::upper_bound(first, column.end(), *first);
            mLuma.push_back({*first, static_cast<int>(last - first)});
            first = last;
        }
        mLumaEnds.push_back(mLuma.size());
    }
}

Ycc CardPicture::At(int x, int y) const noexcept {
    const auto column = static_cast<std::size_t>(x);
    return {mFrame.Line(0, y)[column], mFrame.Line(1, y)[column], mFrame.Line(2, y)[column]};
}

std::span<const LumaCount> CardPicture::LumaOf(int x) const noexcept {
    const std::size_t begin = x == 0 ? 0 : mLumaEnds[static_cast<std::size_t>(x) - 1];
    return std::span(mLuma).subspan(begin, mLumaEnds[static_cast<std::size_t>(x)] - begin);
}

}  // namespace studio
