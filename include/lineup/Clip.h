#pragma once

#include <lineup/Api.h>
#include <lineup/Importer.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <span>

namespace lineup {

/// An open line-up clip: a plug-in and the settings that make this clip. Every method may be called
/// from several threads at once. Channels are in the order of a ChannelLayout's: M; L, R; L, R, Ls, Rs, C, LFE.
class LINEUP_API Clip {
public:
    /// The sample rate of a clip that has no settings, Hz.
    static constexpr float kHostSampleRate = 48000.0F;

    /// Opens the clip that `settings` stands for, or the default clip at `hostSampleRate` Hz. Throws
    /// Error without a plug-in, and when it describes a clip that cannot be played: no channels or more than 64,
    /// or a sample rate that is not above 0 Hz, or above 1 MHz.
    explicit Clip(std::shared_ptr<const Importer> importer,
                  const std::optional<BarsAndToneInfo>& settings = std::nullopt,
                  float hostSampleRate = kHostSampleRate);

    [[nodiscard]] const Importer& Plugin() const noexcept { return *mImporter; }
    [[nodiscard]] const std::optional<BarsAndToneInfo>& Settings() const noexcept { return mSettings; }

    [[nodiscard]] int NumChannels() const noexcept;
    [[nodiscard]] float SampleRate() const noexcept { return mDescription.sampleRate; }

    /// The clip's length as the plug-in describes it. Its audio has no end: any position may be read.
    [[nodiscard]] std::int64_t DurationSamples() const noexcept { return mDescription.durationSamples; }

    /// Draws the clip's picture, in one of the formats of <lineup/interface/Frame/PixelFormats.h>. Throws Error for
    /// sides that are not 1 to PictureFormat::kMostSize pixels, another format, or when the plug-in refuses.
    [[nodiscard]] zelcore::FrameBuffer ReadFrame(int width, int height, std::uint32_t pixelFormat) const;

    /// Fills maxima[c] and minima[c], NumChannels() spans each, all of one length, with the waveform
    /// overview from sample `position` on, `peakRate` values a second. Throws Error when shapes differ, for a rate
    /// that is not above 0 and finite, or when the plug-in refuses.
    void ReadPeaks(std::int64_t position, float peakRate, std::span<const std::span<float>> maxima,
                   std::span<const std::span<float>> minima) const;

    /// What goes with this clip's requests.
    [[nodiscard]] RequestSettings ForRequest() const noexcept;

    /// The buffers a request needs: one a channel, and at least six.
    [[nodiscard]] int RequestBuffers() const noexcept;

private:
    void RequestPeaks(std::int64_t position, float peakRate, std::span<const std::span<float>> maxima,
                      std::span<const std::span<float>> minima) const;

    std::shared_ptr<const Importer> mImporter;
    std::optional<BarsAndToneInfo> mSettings;
    ClipDescription mDescription;
};

}  // namespace lineup
