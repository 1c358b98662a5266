#pragma once

#include "Host/Interface/Frame/FrameServices.h"
#include "Host/Interface/Importer/ImportSelectors.h"
#include "Tests/Support/RequestRecord.h"

#include <cstdint>

struct imStdParms;

/// Requests to the importer as a host makes them. A program of tests links one of LinkedImporter.cpp
/// and BundledImporter.cpp, which say where the entry point comes from.
namespace test {

/// Calls the importer's entry point.
std::int32_t Request(std::int32_t selector, void* param1, void* param2, imStdParms* stdParms = nullptr);

/// Sizes of the request records, in bytes.
inline constexpr std::size_t kInitRecordSize = 48;
inline constexpr std::size_t kFileFormatRecordSize = 556;
inline constexpr std::size_t kPixelFormatRecordSize = 12;
inline constexpr std::size_t kInfoRecordSize = 240;
inline constexpr std::size_t kImageRecordSize = 236;
inline constexpr std::size_t kAudioRecordSize = 36;
inline constexpr std::size_t kPeakRecordSize = 48;
inline constexpr std::size_t kPrefsRecordSize = 72;

struct FrameRequest {
    std::int16_t width;
    std::int16_t height;
    std::uint32_t pixelFormat;
    vexel frame;
    Placement placement = {};
};

struct AudioRequest {
    std::int64_t position;
    std::uint32_t count;
    float** buffers;
    const void* privateData;
    const void* prefs;
    Placement placement = {};
};

struct PeakRequest {
    std::int64_t position;
    float peakRate;
    std::int32_t count;
    float** maxima;
    float** minima;
    const void* privateData;
    const void* prefs;
    Placement placement = {};
};

/// Sends the request in a record of its own, expects that no byte of the record changes, and returns
/// the result code.
std::int32_t Send(const FrameRequest& request);
std::int32_t Send(const AudioRequest& request);
std::int32_t Send(const PeakRequest& request);

}  // namespace test
