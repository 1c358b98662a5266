#include "Host/Lineup/Validation/Examination/Examination.h"

#include "Host/Interface/Importer/ImportRecords.h"
#include "Host/Interface/Importer/ImportSelectors.h"

namespace lineup::validation {

namespace {

// More than any plug-in keeps with a clip; a size beyond it is a number that was never written.
constexpr std::size_t kLargestSettings = std::size_t{1} << 20U;

}  // namespace

const RawImporter& Examination::Plugin() {
    if (!mPlugin) {
        mPlugin.emplace(zelcore::Bundle(mBundleFolder).Executable());
        imImportInfoRec record{};  // as any host begins; what is answered is a check of its own
        mPlugin->Call(kImportInit, &record, nullptr);
    }
    return *mPlugin;
}

std::size_t Examination::SettingsSize() {
    if (!mSettingsSize) {
        imGetPrefsRec record{};
        const std::int32_t result = Plugin().Call(kImportGetPrefs, nullptr, &record);
        Require(result == kImportNoError, "the size of the settings is answered with {} instead of 0", result);
        const std::size_t size = record.prefsLength;
        Require(size <= kLargestSettings, "the settings are {} bytes, more than a host keeps with a clip", size);
        mSettingsSize = size;
        mPlugin->ShowSettings(size);
    }
    return *mSettingsSize;
}

}  // namespace lineup::validation
