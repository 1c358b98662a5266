#include "Host/Lineup/Validation/Examination/Examination.h"

#include "Host/Interface/Importer/ImportRecords.h"
#include "Host/Interface/Importer/ImportSelectors.h"

namespace lineup::validation {

const RawImporter& Examination::Plugin() {
    if (!mPlugin) {
        mPlugin.emplace(zelcore::Bundle(mBundleFolder).Executable());
        imImportInfoRec record{};  // as any host begins; what is answered is a check of its own
        mPlugin->Call(kImportInit, &record, nullptr);
    }
    return *mPlugin;
}

}  // namespace lineup::validation
