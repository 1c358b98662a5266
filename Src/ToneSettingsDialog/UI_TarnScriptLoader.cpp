#include "Src/ToneSettingsDialog/UI_TarnScriptLoader.h"

#include "Host/Interface/Core/TextConversion.h"
#include "Host/Interface/Platform/CFBundle.h"

#include <algorithm>
#include <iterator>
#include <ostream>

namespace zeltarn {

UI_TarnScriptLoader::UI_TarnScriptLoader(const Brio::String& layoutName) {
    CFBundleRef bundle = CFBundleGetBundleWithIdentifier(CFSTR(BUNDLE_IDENTIFIER));
    if (bundle != nullptr) {
        const Brio::String type = zelcore::utility::AsciiToUTF16("tarn");
        zelcore::utility::GetBinaryFromModule(bundle, layoutName, type, mScript);
    }
}

bool UI_TarnScriptLoader::GetStream(std::ostream& stream) const {
    if (mScript.empty()) {
        return false;
    }
    std::transform(mScript.begin(), mScript.end(), std::ostreambuf_iterator<char>(stream),
                   [](std::uint8_t byte) { return static_cast<char>(byte); });
    return true;
}

}  // namespace zeltarn
