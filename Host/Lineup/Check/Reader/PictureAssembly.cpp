#include "Host/Lineup/Check/Reader/PictureAssembly.h"

#include <algorithm>
#include <variant>

namespace lineup {

void PictureAssembly::TakeUp(const DecoderMessage& message) {
    if (const auto* const facts = std::get_if<decoding::Picture>(&message)) {
        mHasPictures = true;
        if (mListener != nullptr) {
            mListener->OnFacts(*facts);
        }
    } else if (const auto* const frame = std::get_if<decoding::Frame>(&message)) {
        Begin(*frame);
    } else if (const auto* const lines = std::get_if<DecodedLines>(&message)) {
        Add(*lines);
    } else if (const auto* const end = std::get_if<decoding::PictureEnd>(&message)) {
        if (mListener != nullptr) {
            mListener->OnEnd(*end);
        }
    }
}

void PictureAssembly::Begin(const decoding::Frame& head) {
    mPicture.head = head;
    for (std::uint32_t plane = 0; plane < mPicture.planes.size(); ++plane) {
        const bool isThere = plane < head.planes && WantsMore();
        mPicture.planes.at(plane).resize(isThere ? PlaneWidth(head, plane) * PlaneHeight(head, plane) : 0);
    }
    if (head.planes == 0) {
        HandOver();
    }
}

void PictureAssembly::Add(const DecodedLines& lines) {
    if (!WantsMore()) {
        return;
    }
    const std::size_t first = lines.head.first * PlaneWidth(mPicture.head, lines.head.plane);
    std::ranges::copy(lines.codes, mPicture.planes.at(lines.head.plane).begin() + static_cast<std::ptrdiff_t>(first));
    if (lines.isLast) {
        HandOver();
    }
}

void PictureAssembly::HandOver() {
    if (WantsMore()) {
        mWantsMore = mListener->OnPicture(mPicture);
    }
}

}  // namespace lineup
