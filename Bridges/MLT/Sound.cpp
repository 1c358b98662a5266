#include "Bridges/MLT/Sound.h"

#include <lineup/Limits.h>

#include <algorithm>
#include <array>

namespace bridge {

namespace {

constexpr std::size_t kMostChannels = 6;

}  // namespace

int Sound::NearestRate(int rateHz) {
    return std::clamp(rateHz, lineup::kLowestSampleRateHz, lineup::kHighestSampleRateHz);
}

Sound::Sound(const std::shared_ptr<const lineup::Importer>& importer, const ClipChoice& choice, int rateHz,
             const Complain& complain)
    : mRateHz(rateHz),
      mClip(importer, MakeSettings(*importer, choice, rateHz, complain)),
      mReader(mClip),
      mLayout(lineup::FindChannelLayout(mClip.NumChannels())) {}

int Sound::ChannelsFor(int asked) const noexcept {
    const int own = mClip.NumChannels();
    return own == 1 && asked > 1 ? 2 : own;
}

void Sound::Read(std::int64_t start, std::int64_t count, int channels, float* planes) {
    std::array<float*, kMostChannels> targets{};
    for (std::size_t place = 0; place < mLayout->fileOrder.size(); ++place) {
        targets.at(static_cast<std::size_t>(mLayout->fileOrder[place])) =
            planes + static_cast<std::int64_t>(place) * count;
    }
    mReader.Read(start, count, {targets.data(), mLayout->fileOrder.size()});
    for (int copy = mClip.NumChannels(); copy < channels; ++copy) {
        std::copy_n(planes, count, planes + copy * count);
    }
}

}  // namespace bridge
