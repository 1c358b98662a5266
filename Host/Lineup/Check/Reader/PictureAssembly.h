#pragma once

#include "Host/Lineup/Check/Reader/DecodedPicture.h"
#include "Host/Lineup/Check/Reader/Protocol/MessageReader.h"

namespace lineup {

/// Puts frames together from what the decoder says, and hands them on.
class PictureAssembly {
public:
    /// `listener` may be null: then pictures are passed over.
    explicit PictureAssembly(PictureListener* listener) : mListener(listener) {}

    void TakeUp(const DecoderMessage& message);

    [[nodiscard]] bool HasPictures() const noexcept { return mHasPictures; }

    /// Whether more pictures are wanted.
    [[nodiscard]] bool WantsMore() const noexcept { return mListener != nullptr && mWantsMore; }

private:
    void Begin(const decoding::Frame& head);
    void Add(const DecodedLines& lines);
    void HandOver();

    PictureListener* mListener;
    DecodedPicture mPicture;
    bool mHasPictures = false;
    bool mWantsMore = true;
};

}  // namespace lineup
