#include "Host/Interface/Importer/ImportSelectors.h"
#include "Src/BarsAndToneImporter/BarsAndToneImporter.h"
#include "Src/BarsAndToneImporter/BarsAndToneInfo.h"
#include "Src/ToneSettingsDialog/HandleToneSettingsDialog.h"
#include "Src/ToneSettingsDialog/Kest.h"
#include "Src/ToneSettingsDialog/LayoutNames.h"
#include "Src/ToneSettingsDialog/ToneSettingsDialogDataExchange.h"

#include <cstring>
#include <utility>

namespace {

// Stereo and 5.1 clips can play an identification sequence; mono clips and unknown types cannot.
const Brio::String& LayoutFor(std::uint32_t channelType) {
    const bool canIdentify = (channelType & ~1U) == kChannelTypeStereo;
    static_assert((kChannelType51 & ~1U) == kChannelTypeStereo);
    return canIdentify ? kToneSettingsWithIdentifiersDialogID : kToneSettingsDialogID;
}

// `settings` as the person leaves them: edited, or as they were after a cancel.
BarsAndToneInfo RunDialog(const BarsAndToneInfo& settings) {
    const Brio::InterfaceRef<ToneSettingsDialogDataExchange> exchange(new ToneSettingsDialogDataExchange());
    exchange->SetPrefs(settings);

    const Brio::String layoutName = LayoutFor(settings.channelType);
    Brio::BrioUnknownRef reference = *exchange.Get();
    const zelui::drawbot::SupplierInterface* const drawSupplier = Kest::GetDrawSupplier();
    zelui::ui::UI_Node* const parent = Kest::GetTopLevelMenu();
    HandleToneSettingsDialog(layoutName, std::move(reference), drawSupplier, parent);

    BarsAndToneInfo result = settings;
    if (!exchange->mUserCancelled) {
        exchange->GetPrefs(result);
    }
    return result;
}

}  // namespace

std::int32_t barsGetPrefs(imGetPrefsRec* request) {
    if (request->prefs == nullptr) {
        request->prefsLength = sizeof(BarsAndToneInfo);
        return kImportNoError;
    }
    BarsAndToneInfo settings;
    if (request->useDefaults != 0) {
        settings.sampleRate = request->hostSampleRate;
    } else {
        std::memcpy(&settings, request->prefs, sizeof settings);
        settings = RunDialog(settings);
    }
    std::memcpy(request->prefs, &settings, sizeof settings);
    return kImportNoError;
}
