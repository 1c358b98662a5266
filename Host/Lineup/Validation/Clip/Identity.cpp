#include "Host/Lineup/Validation/Clip/Identity.h"

#include <lineup/Validation.h>
#include "Host/Interface/Importer/ImportRecords.h"
#include "Host/Interface/Importer/ImportSelectors.h"
#include "Host/Lineup/Validation/Examination/Examination.h"

#include <algorithm>

namespace lineup::validation {

namespace {

constexpr std::string_view kIdentifier = LINEUP_BUNDLE_IDENTIFIER;

}  // namespace

std::vector<std::uint32_t> FileTypes(const RawImporter& plugin) {
    constexpr std::intptr_t kLongestList = 256;  // a list that goes on is broken
    std::vector<std::uint32_t> types;
    for (std::intptr_t index = 0; index < kLongestList; ++index) {
        imIndFormatRec record{};
        if (plugin.Call(kImportGetIndFormat, reinterpret_cast<void*>(index), &record) != kImportNoError) {
            break;
        }
        types.push_back(record.fileType);
    }
    return types;
}

bool IsBarsAndTone(std::string_view identifier, std::span<const std::uint32_t> fileTypes) {
    return identifier == kIdentifier || std::ranges::find(fileTypes, kBarsAndToneFileType) != fileTypes.end();
}

bool SaysItIsBarsAndTone(const std::filesystem::path& bundleFolder) {
    Examination examination(bundleFolder, 0);
    const zelcore::Bundle bundle(bundleFolder);
    return IsBarsAndTone(bundle.Identifier(), {}) || IsBarsAndTone({}, FileTypes(examination.Plugin()));
}

}  // namespace lineup::validation
