#include "Apps/studio/Views/CardPicture.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <map>
#include <utility>

namespace studio {

namespace {

int Code8(float value) {
    return static_cast<int>(std::lround(std::clamp(value, 0.0F, 1.0F) * 255.0F));
}

QImage ToScreen(const lineup::FloatPicture& frame, Matrix matrix) {
    QImage image(frame.Width(), frame.Height(), QImage::Format_RGB32);
    for (int line = 0; line < frame.Height(); ++line) {
        const auto y = frame.Line(0, line);
        const auto cb = frame.Line(1, line);
        const auto cr = frame.Line(2, line);
        auto* const pixels = reinterpret_cast<QRgb*>(image.scanLine(line));
        for (std::size_t x = 0; x < y.size(); ++x) {
            const Rgb colour = ToRgb({y[x], cb[x], cr[x]}, matrix);
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
      mScreen(ToScreen(mFrame, Matrix::Bt601)) {
    Convert(mFrame, mMatrix);
    Count();
}

CardPicture::CardPicture(lineup::FloatPicture frame, Matrix matrix)
    : mMatrix(matrix),
      mFrame(std::move(frame)),
      mPixelAspect(PixelAspectOf(mFrame.Width(), mFrame.Height())),
      mScreen(ToScreen(mFrame, matrix)) {
    Count();
}

void CardPicture::Count() {
    const std::vector<Band> bands = FindBands();
    for (std::size_t component = 0; component < mColumns.size(); ++component) {
        mColumns[component] = CountLevels(static_cast<Component>(component), bands);
    }
    mChroma = CountChroma(bands);
}

// A card is few bands, and what is counted is counted once a band.
std::vector<CardPicture::Band> CardPicture::FindBands() const {
    std::vector<Band> bands;
    for (int line = 0; line < Height(); ++line) {
        const auto isSame = [&](int plane) {
            return std::ranges::equal(mFrame.Line(plane, line), mFrame.Line(plane, bands.back().line));
        };
        if (!bands.empty() && isSame(0) && isSame(1) && isSame(2)) {
            ++bands.back().lines;
        } else {
            bands.push_back({line, 1});
        }
    }
    return bands;
}

CardPicture::Columns CardPicture::CountLevels(Component component, const std::vector<Band>& bands) const {
    Columns columns;
    std::vector<LevelCount> runs;
    for (int x = 0; x < Width(); ++x) {
        runs.clear();
        for (const Band& band : bands) {
            runs.push_back({ValueOf(component, At(x, band.line), mMatrix), band.lines});
        }
        std::ranges::sort(runs, {}, &LevelCount::value);
        const std::size_t begin = columns.levels.size();
        for (const LevelCount& run : runs) {
            if (columns.levels.size() == begin || columns.levels.back().value != run.value) {
                columns.levels.push_back(run);
            } else {
                columns.levels.back().pixels += run.pixels;
            }
        }
        columns.ends.push_back(columns.levels.size());
    }
    return columns;
}

std::vector<ChromaCount> CardPicture::CountChroma(const std::vector<Band>& bands) const {
    std::map<std::pair<float, float>, int> counts;
    for (const Band& band : bands) {
        const auto cb = mFrame.Line(1, band.line);
        const auto cr = mFrame.Line(2, band.line);
        for (std::size_t x = 0; x < cb.size();) {
            std::size_t end = x + 1;
            while (end < cb.size() && cb[end] == cb[x] && cr[end] == cr[x]) {
                ++end;
            }
            counts[{cb[x], cr[x]}] += static_cast<int>(end - x) * band.lines;
            x = end;
        }
    }
    std::vector<ChromaCount> chroma;
    chroma.reserve(counts.size());
    for (const auto& [colour, pixels] : counts) {
        chroma.push_back({colour.first, colour.second, pixels});
    }
    return chroma;
}

Ycc CardPicture::At(int x, int y) const noexcept {
    const auto column = static_cast<std::size_t>(x);
    return {mFrame.Line(0, y)[column], mFrame.Line(1, y)[column], mFrame.Line(2, y)[column]};
}

std::span<const LevelCount> CardPicture::LevelsOf(Component component, int x) const noexcept {
    const Columns& columns = mColumns[static_cast<std::size_t>(component)];
    const std::size_t begin = x == 0 ? 0 : columns.ends[static_cast<std::size_t>(x) - 1];
    return std::span(columns.levels).subspan(begin, columns.ends[static_cast<std::size_t>(x)] - begin);
}

}  // namespace studio
