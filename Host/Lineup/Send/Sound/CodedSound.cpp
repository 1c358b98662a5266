#include "Host/Lineup/Send/Sound/CodedSound.h"

#include "Host/Lineup/Send/Sound/ClipCycle.h"
#include "Host/Lineup/Send/Transport/WideMath.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace lineup {
inline namespace parts {

SoundCoder::~SoundCoder() = default;

namespace {

constexpr std::size_t kQuartersKept = 5;  // of the usual size: some codecs' frames vary

}  // namespace

CodedSound::CodedSound(const Clip& clip, OpenCoder open, std::size_t usualBytes, Stretches stretches)
    : mReader(clip),
      mOpen(std::move(open)),
      mStretches(stretches),
      mCycle(CycleSamples(clip)),
      mCoder(mOpen()),
      mBlock(mCoder->BlockSamples()),
      mPadding(mCoder->PaddingSamples()),
      mFrames(mCycle / std::gcd(mCycle, std::int64_t{mBlock})) {
    if (mFrames <= kMostKept / static_cast<std::int64_t>(usualBytes)) {
        mPlaces.resize(static_cast<std::size_t>(mFrames));
        mKept.reserve(mPlaces.size() * usualBytes / 4 * kQuartersKept);  // memory that is not touched costs nothing
    }
    const auto channels = static_cast<std::size_t>(clip.NumChannels());
    mSamples.resize(channels * static_cast<std::size_t>(mBlock));
    for (std::size_t c = 0; c < channels; ++c) {
        mChannels.push_back(mSamples.data() + c * static_cast<std::size_t>(mBlock));
    }
}

std::span<const std::uint8_t> CodedSound::Frame(std::int64_t index) {
    const std::int64_t frame = Modulo(index, mFrames);
    if (const Place place = Keeps() ? mPlaces[static_cast<std::size_t>(frame)] : Place{}; place.size > 0) {
        return std::span(mKept).subspan(place.first, place.size);
    }
    const std::int64_t stretch = frame / mStretches.frames * mStretches.frames;
    if (mStretch != stretch || mNextFrame > frame + 1) {
        Begin(stretch);
    }
    while (mNextFrame <= frame) {
        CodeNext();
    }
    return mPacket;
}

void CodedSound::Begin(std::int64_t stretch) {
    mCoder = mOpen();
    mStretch = stretch;
    mNextFrame = stretch - mStretches.warmUp;
    mNextBlock = mNextFrame;
}

void CodedSound::CodeNext() {
    mPacket.clear();
    while (mPacket.empty()) {
        ReadBlock(mNextBlock++);
        mCoder->Code(mChannels, mPacket);
    }
    const std::int64_t frame = mNextFrame++;
    if (Keeps() && frame >= mStretch) {
        Keep(frame);
    }
}

// What is handed out holds: the block never moves.
void CodedSound::Keep(std::int64_t frame) {
    Place& place = mPlaces[static_cast<std::size_t>(frame)];
    if (place.size == 0 && mKept.size() + mPacket.size() <= mKept.capacity()) {
        place = {.first = mKept.size(), .size = mPacket.size()};
        mKept.insert(mKept.end(), mPacket.begin(), mPacket.end());
    }
}

void CodedSound::ReadBlock(std::int64_t block) {
    std::int64_t position = Modulo(block * mBlock, mCycle);
    std::vector<float*> channels = mChannels;
    for (std::int64_t left = mBlock; left > 0;) {
        const std::int64_t count = std::min(left, mCycle - position);
        mReader.Read(position, count, channels);
        std::ranges::for_each(channels, [count](float*& channel) { channel += count; });
        left -= count;
        position = 0;
    }
}

}  // namespace parts
}  // namespace lineup
