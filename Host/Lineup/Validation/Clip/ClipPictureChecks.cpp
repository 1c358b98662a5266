#include "Host/Lineup/Validation/Examination/Requests.h"
#include "Host/Lineup/Validation/PromiseGroups.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <span>

namespace lineup::validation {

namespace {

// The colours of the bars from left to right, as the parts of red, green and blue in them.
struct Bar {
    const char* name;
    double red;
    double green;
    double blue;
};

constexpr double kBarLevel = 0.75;
constexpr std::array kBars = {Bar{"white", 1, 1, 1}, Bar{"yellow", 1, 1, 0},  Bar{"cyan", 0, 1, 1},
                              Bar{"green", 0, 1, 0}, Bar{"magenta", 1, 0, 1}, Bar{"red", 1, 0, 0},
                              Bar{"blue", 0, 0, 1}};

// The card of a pixel format: the part of the width that its seven bars take up.
struct CardShape {
    std::uint32_t pixelFormat;
    const char* name;
    double left;
    double right;
};

constexpr std::array kCards = {CardShape{kPixelFormat_VUYA_32f, "high-definition", 0.125, 0.875},
                               CardShape{kPixelFormat_VUYA_8u, "standard-definition", 0, 1}};

struct Colour {
    double y;   // luma from 0 to 1
    double cb;  // chroma from -0.5 to 0.5
    double cr;
};

Colour ToYCbCr601(const Bar& bar) {
    constexpr double kRed = 0.299;
    constexpr double kBlue = 0.114;
    const double red = kBarLevel * bar.red;
    const double blue = kBarLevel * bar.blue;
    const double y = kRed * red + (1 - kRed - kBlue) * kBarLevel * bar.green + kBlue * blue;
    return {.y = y, .cb = (blue - y) / (2 - 2 * kBlue), .cr = (red - y) / (2 - 2 * kRed)};
}

Colour PixelAt(const FrameShape& shape, std::span<const std::uint8_t> row, std::size_t column) {
    if (shape.pixelFormat == kPixelFormat_VUYA_32f) {
        std::array<float, 4> vuya{};
        std::memcpy(vuya.data(), row.data() + column * sizeof vuya, sizeof vuya);
        return {.y = double{vuya[2]}, .cb = double{vuya[1]}, .cr = double{vuya[0]}};
    }
    const auto vuya = row.subspan(column * 4, 4);
    return {.y = (vuya[2] - 16) / 219.0, .cb = (vuya[1] - 128) / 224.0, .cr = (vuya[0] - 128) / 224.0};
}

// The card's numbers are of 8 bits, whatever holds them.
bool IsSameCode(const Colour& a, const Colour& b) {
    constexpr double kCode = 1.0 / 219;
    return std::abs(a.y - b.y) <= kCode && std::abs(a.cb - b.cb) <= kCode && std::abs(a.cr - b.cr) <= kCode;
}

void RequireBars(const RawImporter& plugin, const CardShape& card, int width, int height) {
    const FrameShape shape{.width = width, .height = height, .pixelFormat = card.pixelFormat};
    const GuardedFrame frame(shape);
    DrawFrame(plugin, frame);
    const int line = height / 4;
    for (std::size_t i = 0; i < kBars.size(); ++i) {
        const double middle = (static_cast<double>(i) + 0.5) / static_cast<double>(kBars.size());
        const auto column = static_cast<std::size_t>(width * (card.left + middle * (card.right - card.left)));
        const Colour colour = PixelAt(shape, frame.Row(height - 1 - line), column);
        const Colour expected = ToYCbCr601(kBars.at(i));
        Require(
            IsSameCode(colour, expected),
            "{}: line {}, column {} is Y' {:.4f}, Cb {:.4f}, Cr {:.4f}; the {} bar of the {} card is {:.4f}, {:.4f}, "
            "{:.4f}",
            Text(shape), line, column, colour.y, colour.cb, colour.cr, kBars.at(i).name, card.name, expected.y,
            expected.cb, expected.cr);
    }
}

void CheckCardBars(Examination& examination) {
    for (const CardShape& card : kCards) {
        RequireBars(examination.Plugin(), card, 1920, 1080);
        RequireBars(examination.Plugin(), card, 1280, 720);
        RequireBars(examination.Plugin(), card, 720, 576);
        RequireBars(examination.Plugin(), card, 720, 486);
    }
}

}  // namespace

std::span<const Promise> ClipPicturePromises() {
    static constexpr std::array kRows = {
        Promise{"card-bars", "The upper part of the card is seven bars of 75 %, coded in 601 Y'CbCr.", CheckCardBars},
    };
    return kRows;
}

}  // namespace lineup::validation
