#include "Src/ToneSettingsDialog/LayoutNames.h"

#include "Host/Interface/Core/TextConversion.h"

// NOLINTBEGIN(cert-err58-cpp): made as the bundle is loaded; without memory for a name it cannot be
const Brio::String kToneSettingsDialogID = zelcore::utility::AsciiToUTF16("ToneSettingsDialog");
const Brio::String kToneSettingsWithIdentifiersDialogID =
    zelcore::utility::AsciiToUTF16("ToneSettingsWithIdentifiersDialog");
// NOLINTEND(cert-err58-cpp)
