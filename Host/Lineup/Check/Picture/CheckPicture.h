#pragma once

#include <lineup/Api.h>
#include <lineup/CheckReport.h>
#include <lineup/CheckSettings.h>
#include <lineup/Clip.h>
#include "Host/Lineup/Check/Picture/Examination.h"
#include "Host/Lineup/Check/Picture/Find/FindCard.h"
#include "Host/Lineup/Check/Picture/FrameSeries.h"
#include "Host/Lineup/Check/Reader/DecodedPicture.h"

#include <list>
#include <optional>
#include <span>
#include <vector>

namespace lineup::picture {

/// What was found of a recording's pictures.
struct PictureFindings {
    std::optional<PictureReport> picture;  ///< empty where there were none
    bool isCardFound = false;
    std::vector<CheckFault> faults;
    std::vector<CheckNote> notes;
    std::optional<decoding::PictureEnd> length;  ///< s
    double frameRate = 0;                        ///< 0 where it is not known
    bool isStill = false;
};

/// Looks at pictures as they come, and says at the end what the path did to the card. Memory does not grow with the
/// recording.
class LINEUP_API PictureExaminer : public PictureListener {
public:
    /// The card is the clip's. `settings` must hold while it is used.
    PictureExaminer(const Clip& clip, const CheckSettings& settings);

    void OnFacts(const decoding::Picture& facts) override;
    bool OnPicture(const DecodedPicture& picture) override;
    void OnEnd(const decoding::PictureEnd& end) override;

    [[nodiscard]] PictureFindings Findings() const;

    /// Forgets the pictures, not what was drawn for their size.
    void Restart();

private:
    void TakeSize(int width, int height);
    [[nodiscard]] std::span<const CardModel> Models(std::size_t count);
    void Look(const DecodedPicture& picture);
    void TakeSentSize(const Raster& raster, Geometry& geometry);
    void TakeFirstSize(const Raster& raster, Geometry& geometry);

    const Clip* mClip;
    const CheckSettings* mSettings;
    decoding::Picture mFacts{};
    std::optional<decoding::Frame> mFirst;
    std::optional<decoding::PictureEnd> mLength;
    int mWidth = 0;  // that cards were drawn for
    int mHeight = 0;
    std::vector<CardModel> mModels;
    CardModel mFoundModel;
    std::optional<Examination> mFound;
    FrameSeries mSeries;
    int mTries = 0;
    bool mIsUnreadable = false;
};

}  // namespace lineup::picture
