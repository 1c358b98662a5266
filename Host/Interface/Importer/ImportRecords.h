#pragma once

#include <cstddef>
#include <cstdint>

#include "../Frame/FrameServices.h"

/// The request records that cross the importer boundary. All are packed: fields lie at the byte
/// offsets asserted at the end of this file, many of them unaligned. An importer touches the named
/// fields only; the reserved bytes belong to the host.

/// What describes every clip of this interface: synthetic video, whose frames are drawn at the size that is asked for,
/// and sound in 32-bit float samples.
inline constexpr std::uint16_t kClipVideo12 = 24;
inline constexpr std::uint8_t kClipVideo22 = 5;
inline constexpr std::uint8_t kClipVideo31 = 1;
inline constexpr std::uint8_t kClipVideo32 = 2;
inline constexpr std::uint32_t kAudioSampleFormatFloat = 6;

/// The host's service table. It is handed through with every request and is opaque here.
struct imStdParms;

#pragma pack(push, 1)

/// kImportInit: capability flags, filled by the importer.
struct imImportInfoRec {
    std::uint8_t reserved0[28];
    std::uint32_t capability28;  ///< a flag
    std::uint32_t capability32;  ///< a flag
    std::uint32_t capability36;  ///< a flag
    std::uint32_t reserved40;
    std::uint32_t capability44;  ///< a flag
};

/// kImportGetIndFormat: one file format.
struct imIndFormatRec {
    std::uint32_t fileType;  ///< four-character code, first character most significant
    std::uint8_t reserved4[8];
    char formatName[256];          ///< text, ended by a zero byte
    char formatShortName[32];      ///< text, ended by a zero byte
    char platformExtensions[256];  ///< texts; all zero for none
};

/// kImportGetIndPixelFormat: one pixel format.
struct imIndPixelFormatRec {
    std::uint8_t reserved0[8];
    std::uint32_t pixelFormat;  ///< four-character code, first character in the first byte of memory
};

/// kImportGetInfo: the description of a clip.
struct imFileInfoRec8 {
    std::uint8_t hasVideo;  ///< content flag; stored together with the next byte
    std::uint8_t hasAudio;  ///< content flag
    std::uint8_t reserved2[10];
    std::uint16_t video12;  ///< kClipVideo12
    std::uint8_t reserved14[8];
    std::uint8_t video22;  ///< kClipVideo22
    std::uint8_t reserved23[8];
    std::uint8_t video31;  ///< kClipVideo31
    std::uint8_t video32;  ///< kClipVideo32
    std::uint8_t reserved33[141];
    std::uint32_t numChannels;        ///< audio channels
    float sampleRate;                 ///< Hz; filled by the host beforehand with its own rate
    std::uint32_t audioSampleFormat;  ///< kAudioSampleFormatFloat
    std::int64_t durationSamples;     ///< length, at sampleRate
    std::uint8_t reserved194[4];
    void* privateData;  ///< written by the importer; returned to it with kImportReleasePrivateData
    void* prefs;        ///< the clip's settings record, or null; read only
    std::uint8_t reserved214[26];
};

/// kImportImage: one frame.
struct imImportImageRecEx {
    std::uint8_t reserved0[4];
    std::int16_t width;  ///< pixels
    std::uint8_t reserved6[2];
    std::int16_t height;  ///< pixels
    std::uint8_t reserved10[50];
    std::uint32_t pixelFormat;  ///< four-character code, as in imIndPixelFormatRec
    std::uint8_t reserved64[164];
    vexel frame;  ///< the host's frame buffer, at least width x height pixels of pixelFormat
};

/// kImportAudio: a stretch of audio. A steady tone writes channels c < numChannels of the settings; an identification
/// sequence writes the two or six that it is made for, whatever numChannels says. So a host hands over numChannels
/// buffers, and six at least.
struct imImportAudioRec7 {
    std::int64_t position;  ///< index of the first sample, at the clip's sample rate
    std::uint32_t count;    ///< samples per channel
    float** buffers;        ///< buffers[c][i], i < count; c in the order L R Ls Rs C LFE, six buffers at least
    void* privateData;      ///< settings used when prefs is null; may be null
    void* prefs;            ///< the clip's settings record, or null
};

/// kImportPeakAudio: a stretch of waveform overview.
struct imPeakAudioRec {
    void* privateData;      ///< settings used when prefs is null; may be null
    void* prefs;            ///< the clip's settings record, or null
    std::int64_t position;  ///< index of the first sample, at the clip's sample rate
    float peakRate;         ///< peak values per second
    std::int32_t count;     ///< peak values per channel
    float** maxima;         ///< maxima[c][i], i < count; six buffers at least, as for audio
    float** minima;         ///< minima[c][i], c < numChannels of the settings, i < count
};

/// kImportGetPrefs: the settings request.
struct imGetPrefsRec {
    void* prefs;                ///< the host's settings buffer, or null to ask for its size
    std::uint32_t prefsLength;  ///< written with the size in bytes when prefs is null
    std::uint8_t useDefaults;   ///< non-zero: fill in default settings and show no dialog
    std::uint8_t reserved13[48];
    float hostSampleRate;  ///< Hz; the rate of default settings
    std::uint8_t reserved65[7];
};

#pragma pack(pop)

static_assert(offsetof(imImportInfoRec, capability28) == 28);
static_assert(offsetof(imImportInfoRec, capability32) == 32);
static_assert(offsetof(imImportInfoRec, capability36) == 36);
static_assert(offsetof(imImportInfoRec, capability44) == 44);

static_assert(offsetof(imIndFormatRec, fileType) == 0);
static_assert(offsetof(imIndFormatRec, formatName) == 12);
static_assert(offsetof(imIndFormatRec, formatShortName) == 268);
static_assert(offsetof(imIndFormatRec, platformExtensions) == 300);
static_assert(sizeof(imIndFormatRec) == 556);

static_assert(offsetof(imIndPixelFormatRec, pixelFormat) == 8);

static_assert(offsetof(imFileInfoRec8, hasVideo) == 0);
static_assert(offsetof(imFileInfoRec8, hasAudio) == 1);
static_assert(offsetof(imFileInfoRec8, video12) == 12);
static_assert(offsetof(imFileInfoRec8, video22) == 22);
static_assert(offsetof(imFileInfoRec8, video31) == 31);
static_assert(offsetof(imFileInfoRec8, video32) == 32);
static_assert(offsetof(imFileInfoRec8, numChannels) == 174);
static_assert(offsetof(imFileInfoRec8, sampleRate) == 178);
static_assert(offsetof(imFileInfoRec8, audioSampleFormat) == 182);
static_assert(offsetof(imFileInfoRec8, durationSamples) == 186);
static_assert(offsetof(imFileInfoRec8, privateData) == 198);
static_assert(offsetof(imFileInfoRec8, prefs) == 206);

static_assert(offsetof(imImportImageRecEx, width) == 4);
static_assert(offsetof(imImportImageRecEx, height) == 8);
static_assert(offsetof(imImportImageRecEx, pixelFormat) == 60);
static_assert(offsetof(imImportImageRecEx, frame) == 228);

static_assert(offsetof(imImportAudioRec7, position) == 0);
static_assert(offsetof(imImportAudioRec7, count) == 8);
static_assert(offsetof(imImportAudioRec7, buffers) == 12);
static_assert(offsetof(imImportAudioRec7, privateData) == 20);
static_assert(offsetof(imImportAudioRec7, prefs) == 28);

static_assert(offsetof(imPeakAudioRec, privateData) == 0);
static_assert(offsetof(imPeakAudioRec, prefs) == 8);
static_assert(offsetof(imPeakAudioRec, position) == 16);
static_assert(offsetof(imPeakAudioRec, peakRate) == 24);
static_assert(offsetof(imPeakAudioRec, count) == 28);
static_assert(offsetof(imPeakAudioRec, maxima) == 32);
static_assert(offsetof(imPeakAudioRec, minima) == 40);

static_assert(offsetof(imGetPrefsRec, prefs) == 0);
static_assert(offsetof(imGetPrefsRec, prefsLength) == 8);
static_assert(offsetof(imGetPrefsRec, useDefaults) == 12);
static_assert(offsetof(imGetPrefsRec, hostSampleRate) == 61);
