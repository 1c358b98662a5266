#include "Host/Lineup/Check/Reader/Decoder/PictureSampling.h"

#include <algorithm>

namespace lineup::decoding {

namespace {

constexpr std::int64_t kFirstFrames = 100;  // of a recording that does not say how long it is
constexpr double kStepOfStreams = 1;        // s, behind them

}  // namespace

PictureSampling::PictureSampling(bool standAlone, double frameRate, double length)
    : mTakesAll(length > 0 && length * frameRate <= kMostFrames),
      mKeysOnly(!standAlone),
      mStep(length > 0 ? length / kMostFrames : kStepOfStreams) {
    mTaken = length > 0 ? kFirstFrames : 0;
}

// Behind the first frames of a stream, frames that need others are not decoded any more: the first one after them is
// key.
bool PictureSampling::Takes(double seconds, bool isKey) {
    if (mTakesAll || mTaken < kFirstFrames) {
        ++mTaken;
        return true;
    }
    if ((mKeysOnly && !isKey) || (mNext && seconds < *mNext && seconds > *mNext - 2 * mStep)) {
        return false;
    }
    mNext = (mNext && seconds < *mNext + mStep ? std::max(*mNext, seconds - mStep) : seconds) + mStep;
    ++mTaken;
    return true;
}

}  // namespace lineup::decoding
