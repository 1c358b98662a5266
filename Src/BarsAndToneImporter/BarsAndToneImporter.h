#pragma once

#include "Host/Interface/Importer/ImportRecords.h"

#include <cstdint>

/// The request handlers behind xImportEntry. Each returns an ImportResult. Records belong to the host;
/// a handler touches the fields its comment names and nothing else. Records are not checked for null.
/// All but barsGetPrefs may be called from any thread.

/// The clip's file type, "XQNV".
inline constexpr std::uint32_t kBarsAndToneFileType = 0x58514E56;

/// Sets the four capability flags to 1. Returns kImportInitAnswer.
std::int32_t barsInit(imImportInfoRec* info);

/// Describes the one file format, index 0: its type, empty names, no extensions. Returns
/// kImportEndOfList for any other index and leaves the record as it is.
std::int32_t barsGetIndFormat(std::intptr_t index, imIndFormatRec* format);

/// Names the one pixel format offered, index 0: float V,U,Y,A. Returns kImportEndOfList for any other
/// index and leaves the record as it is.
std::int32_t barsGetIndexPixelFormat(std::intptr_t index, imIndPixelFormatRec* format);

/// Describes the clip: bars and tone, five seconds. Allocates the clip's private copy of its settings,
/// which the host gives back with kImportReleasePrivateData; throws std::bad_alloc when it cannot.
std::int32_t barsGetInfo(imFileInfoRec8* info);

/// Frees a private copy made by barsGetInfo. Null is ignored.
std::int32_t barsReleasePrivateData(void* privateData);

/// Draws the colour-bar card into the record's frame. Returns kImportUnsupported, and draws nothing,
/// for a pixel format other than float or 8-bit V,U,Y,A.
std::int32_t barsImportImage(imImportImageRecEx* request);

/// Writes `count` samples to each of the clip's channels. An identification sequence writes the two or
/// six channels it is made for, whatever the clip's channel count; an unknown one writes nothing.
/// Returns kImportNoSettings, and writes nothing, when the record carries no settings.
std::int32_t barsImportAudio(imImportAudioRec7* request);

/// Writes `count` maxima and minima to each of the clip's channels. A steady tone below the peak rate
/// is drawn as a waveform, minimum equal to maximum; every other tone as the band from -level to level.
/// Returns kImportNoSettings, and writes nothing, when the record carries no settings.
std::int32_t barsGetPeakAudio(imPeakAudioRec* request);

/// Answers the settings request: the record's size, default settings, or the settings as they were.
std::int32_t barsGetPrefs(imGetPrefsRec* request);
