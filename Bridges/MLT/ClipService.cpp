#include "Bridges/MLT/ClipService.h"

#include "Host/Lineup/Values/FrameTimes.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace bridge {

ClipService::ClipService(std::shared_ptr<const lineup::Importer> importer)
    : mImporter(std::move(importer)), mPictureClip(mImporter) {}

std::int64_t ClipService::DurationFrames(lineup::Rational frameRate) const {
    const double seconds = static_cast<double>(mPictureClip.DurationSamples()) / mPictureClip.SampleRate();
    return std::max<std::int64_t>(1, std::llround(seconds * frameRate.num / frameRate.den));
}

void ClipService::Update(mlt_properties properties, const Complain& complain) {
    mUnknown.ComplainOf(properties, complain);
    if (UpdateTexts(properties, mTexts)) {
        mChoice = MakeChoice(mTexts, complain);
        mSounds.clear();
    }
}

bool ClipService::IsBt709For(int profileColourSpace) const noexcept {
    return mChoice.inMatrixOfProfile && profileColourSpace == 709;
}

std::shared_ptr<const PictureBytes> ClipService::Picture(int width, int height, Packing packing, bool bt709) {
    const int bits = packing == Packing::Planar16 ? mChoice.depthBits : 8;
    return mPictures.Get(mPictureClip, {width, height, mChoice.card, packing, bt709, bits});
}

Sound& ClipService::SoundAt(int rateHz, const Complain& complain) {
    const auto found = std::ranges::find(mSounds, rateHz, &Sound::RateHz);
    if (found != mSounds.end()) {
        mSounds.splice(mSounds.begin(), mSounds, found);
    } else {
        mSounds.emplace_front(mImporter, mChoice, rateHz, complain);
        if (mSounds.size() > kMostRates) {
            mSounds.pop_back();
        }
    }
    return mSounds.front();
}

std::int64_t ClipService::StartOf(const SoundRequest& request, int rateHz) {
    if (!(request.frameRate == mFrameRate)) {
        mTimeline.Reset();
        mFrameRate = request.frameRate;
    }
    const std::int64_t exact =
        lineup::SamplesAtFrame(std::max<std::int64_t>(0, request.position), request.frameRate, rateHz);
    return mTimeline.Start(request.position, exact, request.count, rateHz);
}

}  // namespace bridge
