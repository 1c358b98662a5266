#pragma once

#include <lineup/Api.h>
#include <lineup/BarsAndToneInfo.h>
#include <lineup/services/Bundle.h>
#include <lineup/services/FrameBuffer.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

namespace lineup {

/// A plug-in's private copy of a clip's settings; given back to the plug-in when destroyed. What the plug-in throws
/// then is passed over.
using PrivateData = std::unique_ptr<void, std::function<void(void*)>>;

/// What a plug-in says of a clip.
struct ClipDescription {
    bool hasVideo = false;
    bool hasAudio = false;
    std::uint32_t numChannels = 0;
    float sampleRate = 0;  ///< Hz
    std::int64_t durationSamples = 0;
    PrivateData privateData;
};

/// The settings that go with an audio or peak request; either pointer may be null.
struct RequestSettings {
    const BarsAndToneInfo* prefs = nullptr;
    const void* privateData = nullptr;
};

/// A loaded importer bundle: one method a request. All methods may be called from several threads at once, as long
/// as they write to different memory; it must outlive every PrivateData it handed out. What the plug-in throws comes
/// out as an Error with its text, which may be read when the plug-in is gone.
class LINEUP_API Importer {
public:
    /// Loads the bundle and initialises it. Throws Error when there is no usable bundle or no executable for
    /// this platform, when the executable cannot be loaded or has no entry point, and when it answers the Init
    /// request wrongly.
    explicit Importer(const std::filesystem::path& bundleFolder);
    ~Importer();
    Importer(const Importer&) = delete;
    Importer& operator=(const Importer&) = delete;

    [[nodiscard]] const zelcore::Bundle& Bundle() const noexcept;

    /// Four-character codes of the file formats offered, in the plug-in's order.
    [[nodiscard]] std::vector<std::uint32_t> FileTypes() const;

    /// The pixel formats offered, in the plug-in's order.
    [[nodiscard]] std::vector<std::uint32_t> PixelFormats() const;

    /// Describes the clip that `prefs` stands for; without settings, the default clip at
    /// `hostSampleRate` Hz. Throws Error when the plug-in refuses.
    [[nodiscard]] ClipDescription Describe(const BarsAndToneInfo* prefs, float hostSampleRate) const;

    /// The size in bytes of a settings record.
    [[nodiscard]] std::uint32_t SettingsSize() const;

    /// The settings a new clip gets at `hostSampleRate` Hz, asked for without a dialog. Throws Error
    /// when the plug-in's record is not the size of BarsAndToneInfo.
    [[nodiscard]] BarsAndToneInfo DefaultSettings(float hostSampleRate) const;

    /// Lets a person edit `settings` in the plug-in's own dialog and returns when it has been closed.
    /// Settings that were not taken over with OK come back as they were; so do all when there is nothing
    /// to show. UI thread, with a toolkit installed. Throws Error for what the dialog throws, and like
    /// DefaultSettings; `settings` is then left alone.
    void EditSettings(BarsAndToneInfo& settings) const;

    /// Draws the clip's picture over the whole of `frame`. Throws Error when the plug-in does not draw
    /// the frame's pixel format.
    void DrawFrame(zelcore::FrameBuffer& frame) const;

    /// Fills buffers[c][0] .. buffers[c][count - 1] from sample `position` on, in the order of a ChannelLayout's
    /// channels: M; L, R; L, R, Ls, Rs, C, LFE. There must be a buffer for each of the clip's channels and at least
    /// six: sequences write two or six channels whatever the clip has. How many there are is not known here:
    /// AudioReader and Clip::ReadPeaks check what they are given. Throws Error when the plug-in refuses.
    void ReadAudio(const RequestSettings& settings, std::int64_t position, std::uint32_t count, float** buffers) const;

    /// Fills `count` waveform maxima and minima a channel, `peakRate` of them a second, the first one
    /// at sample `position`. As many buffers as for ReadAudio. Throws Error when the plug-in refuses.
    void ReadPeaks(const RequestSettings& settings, std::int64_t position, float peakRate, std::int32_t count,
                   float** maxima, float** minima) const;

private:
    struct Module;

    std::int32_t Call(std::int32_t selector, void* param1, void* param2) const;
    void Release(void* privateData) const noexcept;
    void Require(std::int32_t selector, void* record, const char* act) const;
    void RequireSettingsSize() const;

    std::unique_ptr<const Module> mModule;
};

}  // namespace lineup
