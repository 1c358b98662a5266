#include <lineup/Clip.h>
#include <lineup/Error.h>
#include <lineup/PictureFormat.h>
#include "Host/Lineup/Values/RethrowAsError.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace lineup {

namespace {

constexpr std::uint32_t kMostChannels = 64;
constexpr float kHighestPlayableRateHz = 1e6F;  // beyond any converter; keeps a block of 100 ms small
constexpr int kIdentChannels = 6;

std::shared_ptr<const Importer> Required(std::shared_ptr<const Importer> importer) {
    if (importer == nullptr) {
        throw Error("cannot open a clip without a plug-in");
    }
    return importer;
}

}  // namespace

Clip::Clip(std::shared_ptr<const Importer> importer, const std::optional<BarsAndToneInfo>& settings,
           float hostSampleRate)
    : mImporter(Required(std::move(importer))),
      mSettings(settings),
      mDescription(mImporter->Describe(mSettings ? &*mSettings : nullptr, hostSampleRate)) {
    if (mDescription.numChannels < 1 || mDescription.numChannels > kMostChannels) {
        throw Error(fmt::format("cannot open a clip of {} channels: 1 to {} can be played", mDescription.numChannels,
                                kMostChannels));
    }
    const bool playable =
        mDescription.sampleRate > 0 && mDescription.sampleRate <= kHighestPlayableRateHz;  // not for NaN
    if (!playable) {
        throw Error(fmt::format("cannot open a clip with a sample rate of {} Hz: it must be above 0, at most {}",
                                mDescription.sampleRate, kHighestPlayableRateHz));
    }
}

int Clip::NumChannels() const noexcept {
    return static_cast<int>(mDescription.numChannels);
}

int Clip::RequestBuffers() const noexcept {
    return std::max(NumChannels(), kIdentChannels);
}

RequestSettings Clip::ForRequest() const noexcept {
    return {.prefs = mSettings ? &*mSettings : nullptr, .privateData = mDescription.privateData.get()};
}

zelcore::FrameBuffer Clip::ReadFrame(int width, int height, std::uint32_t pixelFormat) const {
    const std::string act = fmt::format("cannot draw a frame of {}x{} pixels", width, height);
    if (std::max(width, height) > PictureFormat::kMostSize) {
        throw Error(fmt::format("{}: a side has {} at most", act, PictureFormat::kMostSize));
    }
    try {
        zelcore::FrameBuffer frame(width, height, pixelFormat);
        mImporter->DrawFrame(frame);
        return frame;
    } catch (...) {
        RethrowAsError(act);
    }
}

void Clip::ReadPeaks(std::int64_t position, float peakRate, std::span<const std::span<float>> maxima,
                     std::span<const std::span<float>> minima) const {
    const auto channels = static_cast<std::size_t>(NumChannels());
    if (maxima.size() != channels || minima.size() != channels) {
        throw Error(fmt::format("peaks of {} channels were asked for in {} and {} buffers", channels, maxima.size(),
                                minima.size()));
    }
    const std::size_t count = maxima.front().size();
    const auto differs = [count](std::span<float> span) { return span.size() != count; };
    if (count > std::numeric_limits<std::int32_t>::max() || std::ranges::any_of(maxima, differs) ||
        std::ranges::any_of(minima, differs)) {
        throw Error("peaks were asked for in buffers of unequal or too great length");
    }
    if (!std::isfinite(peakRate) || peakRate <= 0) {
        throw Error(fmt::format("cannot make {} peaks a second: the rate must be above 0", peakRate));
    }
    try {
        RequestPeaks(position, peakRate, maxima, minima);
    } catch (...) {
        RethrowAsError("cannot make peaks");
    }
}

void Clip::RequestPeaks(std::int64_t position, float peakRate, std::span<const std::span<float>> maxima,
                        std::span<const std::span<float>> minima) const {
    const std::size_t count = maxima.front().size();
    // What the plug-in writes beyond the clip's channels is dropped.
    std::vector<float> dropped(count);
    const auto pointers = [&](std::span<const std::span<float>> spans) {
        std::vector<float*> buffers(static_cast<std::size_t>(RequestBuffers()), dropped.data());
        std::ranges::transform(spans, buffers.begin(), [](std::span<float> span) { return span.data(); });
        return buffers;
    };
    auto maximaBuffers = pointers(maxima);
    auto minimaBuffers = pointers(minima);
    mImporter->ReadPeaks(ForRequest(), position, peakRate, static_cast<std::int32_t>(count), maximaBuffers.data(),
                         minimaBuffers.data());
}

}  // namespace lineup
