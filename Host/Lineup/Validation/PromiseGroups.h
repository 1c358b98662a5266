#pragma once

#include <lineup/Validation.h>

#include <span>

/// The promises by group, one source file a group: each row stands below the check that it names. A check throws
/// Failure when the promise is not kept, and Skipped when there is nothing to check. Promises.cpp puts the groups in
/// order; lists, help, reports and the page follow from the rows.
namespace lineup::validation {

// Interface: what every bundle promises.
[[nodiscard]] std::span<const Promise> LoadingPromises();
[[nodiscard]] std::span<const Promise> ListPromises();
[[nodiscard]] std::span<const Promise> DescriptionPromises();
[[nodiscard]] std::span<const Promise> SettingsPromises();
[[nodiscard]] std::span<const Promise> MemoryPromises();
[[nodiscard]] std::span<const Promise> AudioPromises();
[[nodiscard]] std::span<const Promise> PeakPromises();
[[nodiscard]] std::span<const Promise> FramePromises();
[[nodiscard]] std::span<const Promise> HostilePromises();
[[nodiscard]] std::span<const Promise> OrderPromises();

// Clip: what Bars and Tone promises beside that.
[[nodiscard]] std::span<const Promise> ClipSettingsPromises();
[[nodiscard]] std::span<const Promise> ClipSoundPromises();
[[nodiscard]] std::span<const Promise> ClipTimelinePromises();
[[nodiscard]] std::span<const Promise> ClipPeakPromises();
[[nodiscard]] std::span<const Promise> ClipHostilePromises();
[[nodiscard]] std::span<const Promise> ClipPicturePromises();

}  // namespace lineup::validation
