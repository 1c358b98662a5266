#pragma once

#include "Host/Interface/Brio/String.h"
#include "Host/Interface/Core/ModuleResources.h"

#include <iosfwd>

namespace zeltarn {

/// The script of one layout, read from the plug-in's own bundle. It lives in the plug-in because only
/// the plug-in knows which bundle is its own.
class UI_TarnScriptLoader {
public:
    /// Reads the resource `layoutName` of type "tarn". A missing bundle or resource leaves it empty.
    explicit UI_TarnScriptLoader(const Brio::String& layoutName);

    /// Writes the script to `stream`, byte for byte. False, and nothing written, when it is empty.
    [[nodiscard]] bool GetStream(std::ostream& stream) const;

private:
    zelcore::utility::ByteVector mScript;
};

}  // namespace zeltarn
