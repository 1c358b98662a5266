#pragma once

#include <lineup/Timecode.h>
#include "Apps/lineup/Options/TimeOptions.h"

namespace cli {

/// How long a file is, in whole frames and in samples: a file with a picture goes by its frames.
struct FileLength {
    std::int64_t frames = 0;
    std::int64_t samples = 0;
    std::int64_t blackFrames = 0;  ///< that follow
    std::int64_t blackSamples = 0;
    std::optional<std::int64_t> cycleSamples{};  ///< what whole cycles that were asked for take
};

/// The options that say how long a file is.
struct LengthOptions {
    TimeOptions time;
    std::optional<std::int64_t> frames;
    std::optional<std::string> until;
    std::optional<std::string> black;

    /// Throws UsageError for a length that cannot be.
    [[nodiscard]] FileLength Length(const lineup::Clip& clip, lineup::Rational frameRate,
                                    const std::optional<lineup::Timecode>& timecode) const;

    /// Whether the length is told in frames or in labels of frames.
    [[nodiscard]] bool CountsFrames() const;

private:
    [[nodiscard]] FileLength ClipLength(const lineup::Clip& clip, lineup::Rational frameRate,
                                        const std::optional<lineup::Timecode>& timecode) const;
};

/// Adds those of AddTimeOptions, --frames, --until and --black.
void AddLengthOptions(CLI::App& command, LengthOptions& options);

}  // namespace cli
