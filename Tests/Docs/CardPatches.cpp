// Prints what a frame of the plug-in holds: card_patches BUNDLE hd|sd WIDTH HEIGHT. The frame is taken apart by looking
// at its pixels: bands of equal lines, and in each band patches of one colour; a run of patches of one column each is a
// ramp. JSON: bands of patches, left and top inclusive, right and bottom not, colours as Y', Cb, Cr in float.
#include <lineup/Clip.h>
#include <lineup/services/FrameBuffer.h>
#include "Host/Interface/Frame/PixelFormats.h"

#include <nlohmann/json.hpp>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <exception>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace {

using Json = nlohmann::ordered_json;
using Colour = std::array<float, 3>;  // Y', Cb, Cr: luma from 0 to 1, chroma from -0.5 to 0.5

constexpr double kBlack = 16;
constexpr double kLumaRange = 219;
constexpr double kGrey = 128;
constexpr double kChromaRange = 224;

Colour ColourAt(const zelcore::FrameBuffer& frame, int line, int column) {
    const std::uint8_t* const pixels = frame.Line(line);
    if (frame.PixelFormat() == kPixelFormat_VUYA_32f) {
        std::array<float, 4> vuya{};
        std::memcpy(vuya.data(), pixels + std::ptrdiff_t{kBytesPerPixel_VUYA_32f} * column, sizeof vuya);
        return {vuya[2], vuya[1], vuya[0]};
    }
    const std::uint8_t* const vuya = pixels + std::ptrdiff_t{kBytesPerPixel_VUYA_8u} * column;
    return {static_cast<float>((vuya[2] - kBlack) / kLumaRange), static_cast<float>((vuya[1] - kGrey) / kChromaRange),
            static_cast<float>((vuya[0] - kGrey) / kChromaRange)};
}

std::vector<Colour> LineOf(const zelcore::FrameBuffer& frame, int line) {
    std::vector<Colour> colours;
    for (int column = 0; column < frame.Width(); ++column) {
        colours.push_back(ColourAt(frame, line, column));
    }
    return colours;
}

struct Patch {
    std::size_t left;
    std::size_t right;
    Colour first;
    Colour last;

    [[nodiscard]] bool IsSingle() const { return right - left == 1; }
};

// Columns that each have a colour of their own go together.
std::vector<Patch> Patches(const std::vector<Colour>& line) {
    std::vector<Patch> patches;
    bool inRamp = false;
    for (std::size_t left = 0; left < line.size();) {
        std::size_t right = left + 1;
        while (right < line.size() && line[right] == line[left]) {
            ++right;
        }
        const Patch patch{left, right, line[left], line[left]};
        if (inRamp && patch.IsSingle()) {
            patches.back().right = right;
            patches.back().last = line[left];
        } else {
            inRamp = patch.IsSingle();
            patches.push_back(patch);
        }
        left = right;
    }
    return patches;
}

Json ToJson(const Patch& patch) {
    Json json = {{"left", patch.left}, {"right", patch.right}, {"colour", patch.first}};
    if (patch.first != patch.last) {
        json["last"] = patch.last;
    }
    return json;
}

Json Bands(const zelcore::FrameBuffer& frame) {
    Json bands = Json::array();
    for (int top = 0; top < frame.Height();) {
        const std::vector<Colour> line = LineOf(frame, top);
        int bottom = top + 1;
        while (bottom < frame.Height() && LineOf(frame, bottom) == line) {
            ++bottom;
        }
        Json patches = Json::array();
        for (const Patch& patch : Patches(line)) {
            patches.push_back(ToJson(patch));
        }
        bands.push_back({{"top", top}, {"bottom", bottom}, {"patches", patches}});
        top = bottom;
    }
    return bands;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 5) {
        std::fputs("usage: card_patches BUNDLE hd|sd WIDTH HEIGHT\n", stderr);
        return 2;
    }
    try {
        const std::uint32_t format = argv[2] == std::string_view("hd") ? kPixelFormat_VUYA_32f : kPixelFormat_VUYA_8u;
        const lineup::Clip clip(std::make_shared<lineup::Importer>(argv[1]));
        std::puts(Bands(clip.ReadFrame(std::stoi(argv[3]), std::stoi(argv[4]), format)).dump().c_str());
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "card_patches: %s\n", error.what());
        return 1;
    }
}
