#pragma once

#include <lineup/Clip.h>
#include <lineup/Idents.h>
#include "Host/Interface/Media/TickTime.h"

#include <CLI/App.hpp>

#include <cstdint>
#include <optional>
#include <string>

namespace cli {

/// The heading of these options in a help text, for a command that has more of their kind.
inline constexpr const char* kTimeGroup = "Time";

/// The options that choose a stretch of a clip.
struct TimeOptions {
    std::string start = "0";
    std::optional<std::string> duration;
    std::optional<double> cycles;

    /// The sample nearest to the start. Throws UsageError for a text that does not name a time.
    [[nodiscard]] std::int64_t StartSample(const lineup::Clip& clip) const;

    /// The length asked for, above 0: a time, or whole cycles of the clip's sequence. Nothing when neither
    /// was given. Throws UsageError for a length that cannot be.
    [[nodiscard]] std::optional<zelmediatypes::TickTime> Duration(const lineup::Clip& clip) const;
};

/// Adds --start, --duration and --cycles. `usualDuration` says in the help what the length is without them.
void AddTimeOptions(CLI::App& command, TimeOptions& options, const std::string& usualDuration);

/// The sequence that a clip plays, or null.
[[nodiscard]] const lineup::Ident* PlayedIdent(const lineup::Clip& clip);

/// What the plug-in says of the clip's length.
[[nodiscard]] zelmediatypes::TickTime DescribedDuration(const lineup::Clip& clip);

}  // namespace cli
