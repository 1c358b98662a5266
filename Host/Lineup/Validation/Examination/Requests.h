#pragma once

#include "Host/Interface/Importer/ImportRecords.h"
#include "Host/Lineup/Validation/Examination/RawImporter.h"
#include "Host/Lineup/Validation/Examination/TestClip.h"
#include "Host/Lineup/Validation/Probes/GuardedBuffers.h"
#include "Host/Lineup/Validation/Probes/GuardedFrame.h"
#include "Host/Lineup/Validation/Probes/GuardedRecord.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// The requests as hosts make them, in guarded memory. All throw Failure, which names the request.
namespace lineup::validation {

/// What hosts play.
inline constexpr std::size_t kMostChannels = 64;
inline constexpr float kHighestRateHz = 1e6F;

/// The buffers that a host hands over at least: a clip may write so many, whatever its own channels are.
inline constexpr std::size_t kFewestBuffers = 6;

/// Buffers that no clip of `channels` channels writes to, which stand behind those that it may.
inline constexpr std::size_t kExtraBuffers = 2;
[[nodiscard]] std::size_t BuffersFor(std::size_t channels);

/// Settings as the plug-in is handed them; either pointer may be null.
struct SettingsPointers {
    void* prefs = nullptr;
    void* privateData = nullptr;
};

/// A stretch of samples.
struct Stretch {
    std::int64_t position = 0;  ///< index of the first sample
    std::uint32_t count = 0;    ///< samples a channel
};

/// A stretch of waveform overview.
struct PeakStretch {
    std::int64_t position = 0;  ///< index of the first sample
    float rateHz = 0;           ///< peak values a second
    std::int32_t count = 0;     ///< peak values a channel
};

/// The request as a failure names it: "audio of 20 samples from -5 on".
[[nodiscard]] std::string Text(const Stretch& stretch);
[[nodiscard]] std::string Text(const PeakStretch& stretch);

/// Each makes one request in a record of its own, requires that nothing of the record and nothing
/// around the buffers changes, and returns the result code.
std::int32_t SendAudio(const RawImporter& plugin, const SettingsPointers& settings, const Stretch& stretch,
                       GuardedBuffers& buffers, Placement placement = {});
std::int32_t SendPeaks(const RawImporter& plugin, const SettingsPointers& settings, const PeakStretch& stretch,
                       GuardedBuffers& maxima, GuardedBuffers& minima, Placement placement = {});

/// The same for a frame of any size and format, in memory that may be of another shape.
std::int32_t SendFrame(const RawImporter& plugin, const FrameShape& shape, vexel frame, Placement placement = {});

/// Has a frame drawn. Throws when it is refused or anything outside of the picture is drawn on.
void DrawFrame(const RawImporter& plugin, const GuardedFrame& frame, Placement placement = {});

/// The pixel formats that the plug-in draws: float V,U,Y,A, which all do, and 8-bit V,U,Y,A unless it is refused.
[[nodiscard]] std::vector<std::uint32_t> DrawnFormats(const RawImporter& plugin);

/// Has silent defaults written into `prefs`, which nothing may be written around. Throws when they are refused.
void SendDefaults(const RawImporter& plugin, GuardedBytes& prefs, float rateHz, std::uint8_t useDefaults = 1,
                  Placement placement = {});

/// Settings as a request carries them: null for those of no bytes.
[[nodiscard]] inline void* AsPrefs(GuardedBytes& settings) {
    return settings.Size() > 0 ? settings.Data() : nullptr;
}

/// A clip's description, which gives its private copy back when destroyed.
class Description {
public:
    /// Asks for the description of `prefs`, or of a new clip at `hostRateHz` when that is null.
    Description(const RawImporter& plugin, void* prefs, float hostRateHz, Placement placement = {});
    ~Description();
    Description(const Description&) = delete;
    Description& operator=(const Description&) = delete;

    [[nodiscard]] std::int32_t Result() const noexcept { return mResult; }
    [[nodiscard]] imFileInfoRec8 Record() const { return mRecord.Get(); }
    [[nodiscard]] void* PrivateData() const { return mRecord.Get().privateData; }
    /// Throws when a byte of the record changed that is not a field of the plug-in's.
    void RequireRecordIntact() const;

private:
    const RawImporter* mPlugin;
    GuardedRecord<imFileInfoRec8> mRecord;
    std::int32_t mResult = -1;
};

/// A clip's settings in guarded memory, as a host keeps them for its requests. A plug-in without settings gets the
/// private copy of a description instead.
class HostSettings {
public:
    HostSettings(const RawImporter& plugin, const TestClip& clip, Placement placement = {});

    [[nodiscard]] SettingsPointers Pointers();
    /// Throws when a byte of them changed; `what` was asked for.
    void RequireUnchanged(const std::string& what) const;

private:
    GuardedBytes mPrefs;
    std::optional<Description> mDescription;
};

/// Samples or peak values: [channel][index].
using Samples = std::vector<std::vector<float>>;

struct Peaks {
    Samples maxima;
    Samples minima;
};

/// A stretch of a clip's channels, from settings that must stay as they are. Throws when the request is refused,
/// writes outside the buffers, writes a channel in part, or a sample that is not finite. A channel that is left
/// alone is silent: hosts clear their buffers.
[[nodiscard]] Samples ReadAudio(const RawImporter& plugin, const TestClip& clip, const Stretch& stretch,
                                Placement placement = {});

/// The same from settings that the caller keeps.
[[nodiscard]] Samples ReadWith(const RawImporter& plugin, const SettingsPointers& settings, std::size_t channels,
                               const Stretch& stretch);

/// Whether the plug-in makes waveform overviews; else it answers with 3.
[[nodiscard]] bool ServesPeaks(const RawImporter& plugin, const TestClip& clip);

/// The same of the overview. Throws also where a minimum lies above its maximum, and Skipped when the plug-in makes no
/// overviews: it answers with 3.
[[nodiscard]] Peaks ReadPeaks(const RawImporter& plugin, const TestClip& clip, const PeakStretch& stretch,
                              Placement placement = {});

}  // namespace lineup::validation
