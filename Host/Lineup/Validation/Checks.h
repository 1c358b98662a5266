#pragma once

#include "Host/Lineup/Validation/Examination/Examination.h"

/// The checks by group, one source file a group. Each throws Failure when the bundle does not keep the
/// promise that stands beside it in the table of checks, and Skipped when there is nothing to check.
namespace lineup::validation {

// LoadingChecks.cpp
void CheckBundleLayout(Examination& examination);
void CheckEntryPoint(Examination& examination);
void CheckInitAnswer(Examination& examination);
void CheckReservedSelector(Examination& examination);
void CheckUnknownSelectors(Examination& examination);

// EnumerationChecks.cpp
void CheckFileFormats(Examination& examination);
void CheckPixelFormats(Examination& examination);

// DescriptionChecks.cpp
void CheckDescriptionWithSettings(Examination& examination);
void CheckDescriptionWithoutSettings(Examination& examination);
void CheckDescriptionRecord(Examination& examination);
void CheckHostileDescriptions(Examination& examination);

// PrivateCopyChecks.cpp
void CheckPrivateCopies(Examination& examination);
void CheckSettingsOrder(Examination& examination);
void CheckReleaseFrees(Examination& examination);
void CheckRequestsKeepNoMemory(Examination& examination);

// SettingsChecks.cpp
void CheckSettingsSize(Examination& examination);
void CheckSettingsDefaults(Examination& examination);

// AudioChecks.cpp
void CheckAudioBuffers(Examination& examination);
void CheckAudioRecords(Examination& examination);
void CheckSteadyTone(Examination& examination);
void CheckIdentSchedules(Examination& examination);

// TimelineChecks.cpp
void CheckAudioSplits(Examination& examination);
void CheckAudioFar(Examination& examination);
void CheckAudioNegative(Examination& examination);
void CheckOddRates(Examination& examination);

// PeakChecks.cpp
void CheckPeakBuffers(Examination& examination);
void CheckPeakRecords(Examination& examination);
void CheckPeakSplits(Examination& examination);
void CheckPeaksMatchAudio(Examination& examination);

// FrameChecks.cpp
void CheckFramesDrawnWhole(Examination& examination);
void CheckFrameRecords(Examination& examination);
void CheckFrameFormats(Examination& examination);
void CheckFramesOfNoSize(Examination& examination);

// HostileChecks.cpp
void CheckHostileAudio(Examination& examination);
void CheckHostilePeaks(Examination& examination);

// OrderChecks.cpp
void CheckAnyOrder(Examination& examination);
void CheckConcurrentRequests(Examination& examination);

}  // namespace lineup::validation
