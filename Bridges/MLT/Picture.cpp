#include "Bridges/MLT/Picture.h"

#include "Host/Lineup/Picture/ConvertedPicture.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace bridge {

namespace {

constexpr std::size_t kPlanes = lineup::ConvertedPicture::kPlanes;

PictureBytes PackYuyv8(const lineup::ConvertedPicture& planes, std::size_t width, std::size_t height) {
    PictureBytes bytes(width * height * 2);
    std::uint8_t* out = bytes.data();
    for (std::size_t line = 0; line < height; ++line) {
        const std::array chroma = {planes.Line(1, line), planes.Line(2, line)};
        const std::uint8_t* const luma = planes.Line(0, line);
        for (std::size_t x = 0; x < width; ++x) {
            *out++ = luma[x];
            *out++ = chroma.at(x % 2)[x / 2];
        }
    }
    return bytes;
}

PictureBytes PackPlanar16(const lineup::ConvertedPicture& planes, std::size_t width, std::size_t height, int bits) {
    PictureBytes bytes(width * height * 4);
    std::uint8_t* out = bytes.data();
    for (std::size_t plane = 0; plane < kPlanes; ++plane) {
        const std::size_t lineValues = plane == 0 ? width : width / 2;
        for (std::size_t line = 0; line < height; ++line) {
            for (std::size_t x = 0; x < lineValues; ++x) {
                const auto value = static_cast<std::uint16_t>(planes.Value(plane, line, x) << (16 - bits));
                std::memcpy(out, &value, sizeof(value));
                out += sizeof(value);
            }
        }
    }
    return bytes;
}

}  // namespace

PictureBytes DrawPicture(const lineup::Clip& clip, const PictureKey& key) {
    const int bits = key.packing == Packing::Planar16 ? key.bits : 8;
    const auto coding = key.bt709 ? lineup::ColourCoding::Ycc709 : lineup::ColourCoding::Ycc601;
    const lineup::ConvertedPicture planes(lineup::ReadPicture(clip, key.width, key.height, key.card),
                                          {.coding = coding, .bits = bits, .subsampleWidth = 1});
    const auto width = static_cast<std::size_t>(key.width);
    const auto height = static_cast<std::size_t>(key.height);
    return key.packing == Packing::Planar16 ? PackPlanar16(planes, width, height, bits)
                                            : PackYuyv8(planes, width, height);
}

std::shared_ptr<const PictureBytes> PictureStore::Get(const lineup::Clip& clip, const PictureKey& key) {
    const auto found = std::ranges::find(mNewestFirst, key, &Entry::key);
    if (found != mNewestFirst.end()) {
        mNewestFirst.splice(mNewestFirst.begin(), mNewestFirst, found);
    } else {
        mNewestFirst.push_front({key, std::make_shared<const PictureBytes>(DrawPicture(clip, key))});
        if (mNewestFirst.size() > kMost) {
            mNewestFirst.pop_back();
        }
    }
    return mNewestFirst.front().bytes;
}

}  // namespace bridge
