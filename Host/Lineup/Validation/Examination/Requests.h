#pragma once

#include "Host/Interface/Importer/ImportRecords.h"
#include "Host/Lineup/Validation/Examination/RawImporter.h"
#include "Host/Lineup/Validation/Probes/GuardedBuffers.h"
#include "Host/Lineup/Validation/Probes/GuardedFrame.h"
#include "Host/Lineup/Validation/Probes/GuardedRecord.h"
#include "Src/BarsAndToneImporter/BarsAndToneInfo.h"

#include <cstdint>
#include <string>
#include <vector>

namespace lineup::validation {

/// No clip of the interface has more channels; the buffers of every request are this many.
inline constexpr std::size_t kMostChannels = 8;

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

/// Each makes one request in a record of its own, requires that nothing of the record and nothing
/// around the buffers changes, and returns the result code. Throws Failure, naming the request.
std::int32_t SendAudio(const RawImporter& plugin, const SettingsPointers& settings, const Stretch& stretch,
                       GuardedBuffers& buffers, Placement placement = {});
std::int32_t SendPeaks(const RawImporter& plugin, const SettingsPointers& settings, const PeakStretch& stretch,
                       GuardedBuffers& maxima, GuardedBuffers& minima, Placement placement = {});

/// The same for a frame of any size and format, in memory that may be of another shape.
std::int32_t SendFrame(const RawImporter& plugin, const FrameShape& shape, vexel frame, Placement placement = {});

/// Has a frame drawn. Throws Failure when it is refused or anything outside of the picture is drawn on.
void DrawFrame(const RawImporter& plugin, const GuardedFrame& frame, Placement placement = {});

/// Samples or peak values: [channel][index].
using Samples = std::vector<std::vector<float>>;

/// The first `channels` channels of a stretch, from a copy of `settings` that must stay as it is.
/// Throws Failure when the request is refused, writes outside the buffers or leaves a sample unwritten.
Samples ReadAudio(const RawImporter& plugin, const BarsAndToneInfo& settings, std::size_t channels,
                  const Stretch& stretch);

/// The same of the overview.
struct Peaks {
    Samples maxima;
    Samples minima;
};
Peaks ReadPeaks(const RawImporter& plugin, const BarsAndToneInfo& settings, std::size_t channels,
                const PeakStretch& stretch);

/// The request as a failure names it: "audio of 20 samples from -5 on".
std::string Text(const Stretch& stretch);
std::string Text(const PeakStretch& stretch);

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
    [[nodiscard]] const GuardedRecord<imFileInfoRec8>& Guarded() const noexcept { return mRecord; }

private:
    const RawImporter* mPlugin;
    GuardedRecord<imFileInfoRec8> mRecord;
    std::int32_t mResult = -1;
};

}  // namespace lineup::validation
