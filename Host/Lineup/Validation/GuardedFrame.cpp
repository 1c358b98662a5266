#include "Host/Lineup/Validation/GuardedFrame.h"

#include "Host/Interface/Importer/ImportRecords.h"
#include "Host/Interface/Importer/ImportSelectors.h"
#include "Host/Lineup/Validation/Examination.h"

#include <algorithm>
#include <array>

namespace lineup::validation {

namespace {

constexpr std::size_t kGuardBytes = 1U << 16U;  // more than a row of most sizes

std::size_t BytesPerPixel(std::uint32_t pixelFormat) {
    return pixelFormat == kPixelFormat_VUYA_32f ? kBytesPerPixel_VUYA_32f : kBytesPerPixel_VUYA_8u;
}

}  // namespace

std::string Text(const FrameShape& shape) {
    std::string format;
    for (unsigned shift = 0; shift < 32; shift += 8) {
        const auto character = static_cast<char>((shape.pixelFormat >> shift) & 0xFFU);
        format += character >= ' ' && character <= '~' ? character : '?';
    }
    return fmt::format("the frame of {}x{}, {}", shape.width, shape.height, format);
}

GuardedFrame::GuardedFrame(const FrameShape& shape)
    : mShape(shape),
      mBuffer(shape.width + shape.extraColumns, shape.height, shape.pixelFormat),
      mRowBytes(static_cast<std::size_t>(mBuffer.RowBytes())),
      mPictureRowBytes(static_cast<std::size_t>(shape.width) * BytesPerPixel(shape.pixelFormat)),
      mMemory(2 * kGuardBytes + mRowBytes * static_cast<std::size_t>(shape.height), shape.filler) {
    mBuffer.Handle()->pixels = mMemory.data() + kGuardBytes;
}

std::int32_t SendFrame(const RawImporter& plugin, const FrameShape& shape, vexel frame, Placement placement) {
    GuardedRecord<imImportImageRecEx> record(placement);
    imImportImageRecEx request = record.Get();
    request.width = static_cast<std::int16_t>(shape.width);
    request.height = static_cast<std::int16_t>(shape.height);
    request.pixelFormat = shape.pixelFormat;
    request.frame = frame;
    record.Put(request);
    const std::int32_t result = plugin.Call(kImportImage, nullptr, record.Data());
    record.RequireUnchanged("the record of " + Text(shape));
    return result;
}

std::int32_t GuardedFrame::Send(const RawImporter& plugin, Placement placement) const {
    return SendFrame(plugin, mShape, Handle(), placement);
}

void GuardedFrame::Draw(const RawImporter& plugin, Placement placement) const {
    const std::int32_t result = Send(plugin, placement);
    Require(result == kImportNoError, "{} is answered with {} instead of 0", Text(mShape), result);
    RequireNothingOutside();
}

std::span<const std::uint8_t> GuardedFrame::Row(int row) const {
    return std::span(mMemory).subspan(kGuardBytes + static_cast<std::size_t>(row) * mRowBytes, mPictureRowBytes);
}

void GuardedFrame::RequireFiller(std::size_t begin, std::size_t end, const char* place) const {
    const auto first = mMemory.begin() + static_cast<std::ptrdiff_t>(begin);
    const auto last = mMemory.begin() + static_cast<std::ptrdiff_t>(end);
    Require(std::all_of(first, last, [this](std::uint8_t byte) { return byte == mShape.filler; }),
            "{} was drawn outside of its picture: {}", Text(mShape), place);
}

void GuardedFrame::RequireNothingOutside() const {
    RequireFiller(0, kGuardBytes, "before its first row");
    RequireFiller(mMemory.size() - kGuardBytes, mMemory.size(), "after its last row");
    for (int row = 0; row < mShape.height; ++row) {
        const std::size_t begin = kGuardBytes + static_cast<std::size_t>(row) * mRowBytes;
        RequireFiller(begin + mPictureRowBytes, begin + mRowBytes, "between its rows");
    }
}

void GuardedFrame::RequireUntouched(const std::string& what) const {
    Require(std::ranges::all_of(mMemory, [this](std::uint8_t byte) { return byte == mShape.filler; }),
            "{} drew something", what);
}

}  // namespace lineup::validation
