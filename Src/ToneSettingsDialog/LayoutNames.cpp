#include "Src/ToneSettingsDialog/LayoutNames.h"

#include "Host/Interface/Core/TextConversion.h"

const Brio::String kToneSettingsDialogID = zelcore::utility::AsciiToUTF16("ToneSettingsDialog");
const Brio::String kToneSettingsWithIdentifiersDialogID =
    zelcore::utility::AsciiToUTF16("ToneSettingsWithIdentifiersDialog");
