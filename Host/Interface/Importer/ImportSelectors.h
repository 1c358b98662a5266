#pragma once

#include <cstdint>

/// What a host asks of an importer, and what an importer answers.

/// The request selectors an importer may be called with. Any other value is answered with
/// kImportUnsupported.
enum ImportSelector : std::int32_t {
    kImportInit = 0,                ///< param1: imImportInfoRec*
    kImportImage = 5,               ///< param2: imImportImageRecEx*
    kImportReleasePrivateData = 9,  ///< param2: what GetInfo returned as privateData, or null
    kImportGetIndFormat = 14,       ///< param1: index; param2: imIndFormatRec*
    kImportAudio = 25,              ///< param2: imImportAudioRec7*
    kImportGetIndPixelFormat = 27,  ///< param1: index; param2: imIndPixelFormatRec*
    kImportReserved28 = 28,         ///< no request record
    kImportGetInfo = 37,            ///< param2: imFileInfoRec8*
    kImportGetPrefs = 38,           ///< param2: imGetPrefsRec*; on the host's UI thread only
    kImportPeakAudio = 49,          ///< param2: imPeakAudioRec*
};

/// The result codes of an importer's entry point.
enum ImportResult : std::int32_t {
    kImportNoError = 0,             ///< the request was served
    kImportUnsupported = 3,         ///< unknown selector, or a pixel format that is not offered
    kImportNoSettings = 5,          ///< an audio or peak request without a settings record
    kImportReserved28Answer = 100,  ///< the fixed answer to kImportReserved28
    kImportEndOfList = 301,         ///< an enumeration index past the last entry
    kImportInitAnswer = 400,        ///< the fixed answer to kImportInit
};
