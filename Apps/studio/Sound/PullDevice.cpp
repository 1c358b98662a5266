#include "Apps/studio/Sound/PullDevice.h"

#include "Apps/studio/Sound/SampleConversion.h"

#include <algorithm>

namespace studio {

namespace {

constexpr std::size_t kScratchFrames = 1024;
constexpr qint64 kAlwaysMore = 1 << 20;  // bytes: more than any sound library asks for at once

}  // namespace

PullDevice::PullDevice(std::shared_ptr<ClipPlayback> playback, QAudioFormat::SampleFormat format)
    : mPlayback(std::move(playback)),
      mFormat(format),
      mScratch(kScratchFrames * static_cast<std::size_t>(mPlayback->Outputs())) {}

bool PullDevice::Open() {
    return open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

qint64 PullDevice::bytesAvailable() const {
    return kAlwaysMore;
}

// Whole frames; what does not fill one is left for the next call.
qint64 PullDevice::readData(char* data, qint64 maxSize) {
    const std::size_t sampleBytes = BytesOf(mFormat);
    const std::size_t frameBytes = sampleBytes * static_cast<std::size_t>(mPlayback->Outputs());
    const std::size_t wanted = static_cast<std::size_t>(maxSize) / frameBytes * frameBytes / sampleBytes;
    for (std::size_t done = 0; done < wanted;) {
        const std::span<float> part = std::span(mScratch).first(std::min(wanted - done, mScratch.size()));
        mPlayback->Render(part);
        ConvertSamples(part, mFormat, data + done * sampleBytes);
        done += part.size();
    }
    return static_cast<qint64>(wanted) * static_cast<qint64>(sampleBytes);
}

qint64 PullDevice::writeData(const char* /*data*/, qint64 /*maxSize*/) {
    return -1;
}

}  // namespace studio
