#include "Host/Interface/Frame/PixelFormats.h"
#include "Host/Interface/Importer/ImportRecords.h"
#include "Host/Interface/Importer/ImportSelectors.h"
#include "Host/Lineup/Validation/Examination/Examination.h"
#include "Host/Lineup/Validation/Probes/GuardedRecord.h"
#include "Host/Lineup/Validation/PromiseGroups.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

namespace lineup::validation {

namespace {

// No plug-in offers anywhere near as many; a list that goes on is broken.
constexpr std::intptr_t kLongestList = 256;

void* AsParameter(std::intptr_t index) {
    return reinterpret_cast<void*>(index);
}

// A selector of the list, a record a row; reads rows 0, 1, ... until the end of the list.
template <class Record, class ReadRow>
std::intptr_t WalkList(const RawImporter& plugin, std::int32_t selector, Placement placement, ReadRow readRow) {
    for (std::intptr_t index = 0; index < kLongestList; ++index) {
        GuardedRecord<Record> record(placement);
        const std::int32_t result = plugin.Call(selector, AsParameter(index), record.Data());
        if (result == kImportEndOfList) {
            RequireIntact(fmt::format("the record of index {}, past the end of the list", index),
                          record.ChangedOutside());
            return index;
        }
        Require(result == kImportNoError, "index {} is answered with {} instead of 0 or {}", index, result,
                static_cast<int>(kImportEndOfList));
        readRow(record);
    }
    throw Failure(fmt::format("the list does not end: index {} is still answered with 0", kLongestList - 1));
}

template <class Record>
void RequireEndAt(const RawImporter& plugin, std::int32_t selector, std::intptr_t index) {
    for (const Placement& placement : kPlacements) {
        GuardedRecord<Record> record(placement);
        const std::int32_t result = plugin.Call(selector, AsParameter(index), record.Data());
        Require(result == kImportEndOfList, "index {}, past the end of the list, is answered with {} instead of {}",
                index, result, static_cast<int>(kImportEndOfList));
        RequireIntact(fmt::format("the record of index {}, past the end of the list", index), record.ChangedOutside());
    }
}

template <class Record>
void RequireEnd(const RawImporter& plugin, std::int32_t selector, std::intptr_t size) {
    constexpr std::intptr_t kFar = std::numeric_limits<std::int32_t>::max();
    for (const std::intptr_t index : {size, size + 1, size + 1000, kFar, std::intptr_t{-1}, -kFar}) {
        RequireEndAt<Record>(plugin, selector, index);
    }
}

// Names end within their fields, and nothing lies outside of the fields.
void RequireFileFormat(const GuardedRecord<imIndFormatRec>& record) {
    const imIndFormatRec format = record.Get();
    for (int shift = 24; shift >= 0; shift -= 8) {
        const std::uint32_t character = (format.fileType >> static_cast<unsigned>(shift)) & 0xFFU;
        Require(character >= ' ' && character < 0x7F, "a file type is {:#010x}, which is not four characters",
                std::uint32_t{format.fileType});
    }
    Require(std::ranges::find(format.formatName, '\0') != std::end(format.formatName), "a format's name has no end");
    Require(std::ranges::find(format.formatShortName, '\0') != std::end(format.formatShortName),
            "a format's short name has no end");
    Require(std::ranges::find(format.platformExtensions, '\0') != std::end(format.platformExtensions),
            "a format's extensions have no end");
    RequireIntact(
        "the record of a file format",
        record.ChangedOutside({{offsetof(imIndFormatRec, fileType), 4},
                               {offsetof(imIndFormatRec, formatName), sizeof format.formatName},
                               {offsetof(imIndFormatRec, formatShortName), sizeof format.formatShortName},
                               {offsetof(imIndFormatRec, platformExtensions), sizeof format.platformExtensions}}));
}

void CheckFileFormats(Examination& examination) {
    const RawImporter& plugin = examination.Plugin();
    imIndFormatRec first{};
    if (plugin.Call(kImportGetIndFormat, nullptr, &first) == kImportUnsupported) {
        throw Skipped("it has no list of file formats: the request is answered with 3");
    }
    for (const Placement& placement : kPlacements) {
        std::vector<std::uint32_t> types;
        const auto readRow = [&](const GuardedRecord<imIndFormatRec>& record) {
            RequireFileFormat(record);
            const std::uint32_t type = record.Get().fileType;
            Require(std::ranges::find(types, type) == types.end(), "the file type {:#010x} is listed twice", type);
            types.push_back(type);
        };
        const auto size = WalkList<imIndFormatRec>(plugin, kImportGetIndFormat, placement, readRow);
        RequireEnd<imIndFormatRec>(plugin, kImportGetIndFormat, size);
    }
}

void CheckPixelFormats(Examination& examination) {
    const RawImporter& plugin = examination.Plugin();
    for (const Placement& placement : kPlacements) {
        std::vector<std::uint32_t> formats;
        const auto readRow = [&](const GuardedRecord<imIndPixelFormatRec>& record) {
            const std::uint32_t format = record.Get().pixelFormat;
            Require(format == kPixelFormat_VUYA_32f || format == kPixelFormat_VUYA_8u,
                    "the pixel format {:#010x} is offered, which no host has frames in", format);
            Require(std::ranges::find(formats, format) == formats.end(), "the pixel format {:#010x} is listed twice",
                    format);
            formats.push_back(format);
            RequireIntact("the record of a pixel format",
                          record.ChangedOutside({{offsetof(imIndPixelFormatRec, pixelFormat), 4}}));
        };
        const auto size = WalkList<imIndPixelFormatRec>(plugin, kImportGetIndPixelFormat, placement, readRow);
        RequireEnd<imIndPixelFormatRec>(plugin, kImportGetIndPixelFormat, size);
        Require(std::ranges::find(formats, kPixelFormat_VUYA_32f) != formats.end(),
                "float V,U,Y,A (VUx7) is not offered");
    }
}

}  // namespace

std::span<const Promise> ListPromises() {
    static constexpr std::array kRows = {
        Promise{"file-formats",
                "The list of file formats has no format twice, ends with 301, and fills its fields only.",
                CheckFileFormats},
        Promise{"pixel-formats", "The list of pixel formats has VUx7, ends with 301, and is written to its field only.",
                CheckPixelFormats},
    };
    return kRows;
}

}  // namespace lineup::validation
