#include "Host/Lineup/Check/Reader/Protocol/MessageBody.h"
#include "Host/Lineup/Check/Reader/Protocol/MessageReader.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace lineup {

inline namespace parts {

using decoding::Frame;
using decoding::Lines;
using decoding::Picture;
using decoding::PictureEnd;

std::size_t PlaneWidth(const Frame& frame, std::uint32_t plane) {
    const std::uint32_t shift = plane == 0 ? 0 : frame.subsampleWidth;
    return (std::size_t{frame.width} + (std::size_t{1} << shift) - 1) >> shift;
}

std::size_t PlaneHeight(const Frame& frame, std::uint32_t plane) {
    const std::uint32_t shift = plane == 0 ? 0 : frame.subsampleHeight;
    return (std::size_t{frame.height} + (std::size_t{1} << shift) - 1) >> shift;
}

DecoderMessage MessageReader::ParsePicture(std::span<const std::byte> body) {
    const auto picture = WholeBody<Picture>(body);
    RequireSense(mStage == Stage::Naming && !mHasPicture, "pictures are named at the wrong place");
    RequireSense(std::isfinite(picture.frameRate) && picture.frameRate >= 0 && picture.frameRate <= 1e6 &&
                     picture.flags <= decoding::kLossless && picture.isStill <= 1,
                 "pictures are of no possible kind");
    mHasPicture = true;
    return picture;
}

DecoderMessage MessageReader::ParseFrame(std::span<const std::byte> body) {
    const auto frame = WholeBody<Frame>(body);
    RequireSense(mStage == Stage::Running && mHasPicture && mNextPlane == mFrame.planes, "a frame comes too early");
    RequireSense(std::isfinite(frame.seconds) && std::abs(frame.seconds) <= decoding::kLastSecond && frame.width >= 1 &&
                     frame.width <= decoding::kMostPictureSide && frame.height >= 1 &&
                     frame.height <= decoding::kMostPictureSide &&
                     frame.width * frame.height <= decoding::kMostPicturePixels,
                 "a frame has no possible size or time");
    const bool isRead = (frame.flags & decoding::kCannotRead) == 0;
    RequireSense(frame.bits >= 1 && frame.bits <= 16 && frame.subsampleWidth <= 2 && frame.subsampleHeight <= 2 &&
                     frame.flags < 16 && std::isfinite(frame.turnTag) && std::isfinite(frame.pixelAspect) &&
                     frame.pixelAspect >= 0 && (isRead ? frame.planes == 1 || frame.planes == 3 : frame.planes == 0),
                 "a frame is of no possible kind");
    mFrame = frame;
    mNextPlane = mNextLine = 0;
    return frame;
}

DecoderMessage MessageReader::ParseLines(std::span<const std::byte> body) {
    const auto head = HeadOfBody<Lines>(body);
    RequireSense(
        mStage == Stage::Running && mNextPlane < mFrame.planes && head.plane == mNextPlane && head.first == mNextLine,
        "lines are of no frame");
    const std::size_t height = PlaneHeight(mFrame, head.plane);
    RequireSense(head.count >= 1 && head.count <= height - mNextLine, "lines are more than their plane has");
    const std::size_t count = head.count * PlaneWidth(mFrame, head.plane);
    RequireSense(body.size() == sizeof head + (count + 1) / 2 * 2 * sizeof(std::uint16_t),
                 "lines have another size than they say");
    const auto rest = body.subspan(sizeof head);
    const std::span codes(reinterpret_cast<const std::uint16_t*>(rest.data()), count);
    // Without a way out in the middle, which vector code cannot take.
    const auto bitsOf = [](std::uint16_t all, std::uint16_t code) { return static_cast<std::uint16_t>(all | code); };
    const std::uint16_t all = std::accumulate(codes.begin(), codes.end(), std::uint16_t{0}, bitsOf);
    RequireSense(all >> mFrame.bits == 0, "a code is greater than its bits");
    mNextLine += head.count;
    if (mNextLine == height) {
        ++mNextPlane;
        mNextLine = 0;
    }
    return DecodedLines{.head = head, .codes = codes, .isLast = mNextPlane == mFrame.planes};
}

DecoderMessage MessageReader::ParsePictureEnd(std::span<const std::byte> body) const {
    const auto end = WholeBody<PictureEnd>(body);
    RequireSense(mStage == Stage::Running && mHasPicture && std::abs(end.start) <= decoding::kLastSecond &&
                     std::abs(end.end) <= decoding::kLastSecond && end.frames >= 0,
                 "pictures end at no possible place");
    return end;
}

}  // namespace parts

}  // namespace lineup
