#include "Bridges/MLT/Picture.h"

#include "Host/Lineup/Picture/ColourConversion.h"
#include "Host/Lineup/Picture/FloatPicture.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <new>
#include <span>
#include <utility>

namespace bridge {

namespace {

constexpr std::size_t kAlignmentBytes = 64;
constexpr std::size_t kPlanes = 3;

struct FreeAligned {
    void operator()(std::uint8_t* memory) const noexcept {
        ::operator delete[](memory, std::align_val_t{kAlignmentBytes});
    }
};

/// Three planes of 4:2:2, Y, Cb, Cr, aligned as the conversion wants them.
class ConvertedPlanes {
public:
    ConvertedPlanes(const lineup::FloatPicture& picture, int bits, bool bt709)
        : mStride(StrideFor(picture.Width(), bits)) {
        const auto coding = bt709 ? lineup::ColourCoding::Ycc709 : lineup::ColourCoding::Ycc601;
        const std::size_t planeBytes = mStride * static_cast<std::size_t>(picture.Height());
        std::array<lineup::PlaneMemory, kPlanes> memory{};
        for (std::size_t plane = 0; plane < kPlanes; ++plane) {
            mPlanes.at(plane).reset(new (std::align_val_t{kAlignmentBytes}) std::uint8_t[planeBytes]);
            memory.at(plane) = {mPlanes.at(plane).get(), static_cast<std::ptrdiff_t>(mStride)};
        }
        lineup::ConvertColour(picture, {.coding = coding, .bits = bits, .subsampleWidth = 1}, memory);
    }

    [[nodiscard]] const std::uint8_t* Line(std::size_t plane, std::size_t line) const {
        return mPlanes.at(plane).get() + line * mStride;
    }

private:
    static std::size_t StrideFor(int width, int bits) {
        const std::size_t lineBytes = static_cast<std::size_t>(width) * (bits > 8 ? 2 : 1);
        return (lineBytes + kAlignmentBytes - 1) / kAlignmentBytes * kAlignmentBytes;
    }

    std::size_t mStride;
    std::array<std::unique_ptr<std::uint8_t[], FreeAligned>, kPlanes> mPlanes;
};

// Chroma is shared by pairs of pixels: the last column of an odd width is paired with itself.
lineup::FloatPicture PaddedToEven(lineup::FloatPicture picture) {
    if (picture.Width() % 2 == 0) {
        return picture;
    }
    lineup::FloatPicture padded(picture.Width() + 1, picture.Height());
    for (int plane = 0; plane < lineup::FloatPicture::kPlanes; ++plane) {
        for (int line = 0; line < picture.Height(); ++line) {
            const std::span<const float> from = std::as_const(picture).Line(plane, line);
            const std::span<float> to = padded.Line(plane, line);
            std::ranges::copy(from, to.begin());
            to.back() = from.back();
        }
    }
    return padded;
}

PictureBytes PackYuyv8(const ConvertedPlanes& planes, std::size_t width, std::size_t height) {
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

PictureBytes PackPlanar16(const ConvertedPlanes& planes, std::size_t width, std::size_t height, int bits) {
    PictureBytes bytes(width * height * 4);
    std::uint8_t* out = bytes.data();
    for (std::size_t plane = 0; plane < kPlanes; ++plane) {
        const std::size_t lineValues = plane == 0 ? width : width / 2;
        for (std::size_t line = 0; line < height; ++line) {
            const std::uint8_t* const from = planes.Line(plane, line);
            for (std::size_t x = 0; x < lineValues; ++x) {
                std::uint16_t value = 0;
                std::memcpy(&value, from + x * sizeof(value), sizeof(value));
                value = static_cast<std::uint16_t>(value << (16 - bits));
                std::memcpy(out, &value, sizeof(value));
                out += sizeof(value);
            }
        }
    }
    return bytes;
}

}  // namespace

PictureBytes DrawPicture(const lineup::Clip& clip, const PictureKey& key) {
    const lineup::FloatPicture picture = PaddedToEven(lineup::ReadPicture(clip, key.width, key.height, key.card));
    const auto width = static_cast<std::size_t>(key.width);
    const auto height = static_cast<std::size_t>(key.height);
    if (key.packing == Packing::Planar16) {
        return PackPlanar16(ConvertedPlanes(picture, key.bits, key.bt709), width, height, key.bits);
    }
    return PackYuyv8(ConvertedPlanes(picture, 8, key.bt709), width, height);
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
