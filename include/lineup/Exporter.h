#pragma once

#include <lineup/Api.h>
#include <lineup/Clip.h>
#include <lineup/Error.h>
#include <lineup/ExportReport.h>
#include <lineup/ExportSettings.h>
#include <lineup/UsageError.h>

#include <cstdint>
#include <functional>

namespace lineup {

/// An export that its progress function stopped. Nothing of it is left on disk.
class LINEUP_API Cancelled : public Error {
public:
    using Error::Error;
};

/// Called as an export goes on, with the frames done and the frames in all (samples, in a file without
/// picture); returns false to stop. Called on the thread that exports. May be empty.
using ProgressFunction = std::function<bool(std::int64_t done, std::int64_t total)>;

/// Throws UsageError when `settings` cannot be exported from `clip` as they stand: a size, rate, codec,
/// file format or time code that does not exist or does not go with the others. Touches no file.
LINEUP_API void CheckExport(const Clip& clip, const ExportSettings& settings);

/// Writes `clip` as a media file. The file appears under its name only when it is whole: until then it
/// is a hidden file beside it, ".NAME.lineup-XXXXXX.partial", which is removed when anything goes
/// wrong. Picture and sound end together, to the sample.
/// Throws UsageError as CheckExport does, or when the target exists and may not be replaced; Cancelled
/// when `progress` returned false; Error when the file cannot be written. What `progress` throws is thrown on as it is.
/// Any thread.
LINEUP_API ExportReport Export(const Clip& clip, const ExportSettings& settings, const ProgressFunction& progress = {});

}  // namespace lineup
