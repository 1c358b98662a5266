#pragma once

#include "Host/Lineup/Export/MediaEntry.h"
#include "Host/Lineup/Plugin/DynamicLibrary.h"

namespace lineup {

/// The library of media formats, loaded when first asked for and kept until the process ends. Any thread.
class MediaLibrary {
public:
    /// Throws Error when it is not installed, or is of another version.
    static const MediaLibrary& Get();

    [[nodiscard]] WriteFunction* WriteMovie() const noexcept { return mWriteMovie; }
    [[nodiscard]] WriteFunction* WriteStill() const noexcept { return mWriteStill; }

private:
    explicit MediaLibrary(const DynamicLibrary& library);

    WriteFunction* mWriteMovie;
    WriteFunction* mWriteStill;
};

}  // namespace lineup
