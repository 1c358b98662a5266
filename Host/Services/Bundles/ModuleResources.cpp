#include "Host/Interface/Core/ModuleResources.h"

#include "Host/Services/Bundles/LoadedBundles.h"
#include "Host/Services/Bundles/SmallFile.h"
#include "Host/Services/Text/UnicodeText.h"

#include <optional>
#include <string>

namespace zelcore::utility {

namespace {

// A name that stays in the folder it is put behind.
bool IsPlainName(const std::optional<std::string>& name) {
    return name && !name->empty() && *name != "." && *name != ".." && name->find('/') == std::string::npos &&
           name->find('\0') == std::string::npos;
}

}  // namespace

bool GetBinaryFromModule(CFBundleRef bundle, const Brio::String& name, const Brio::String& type, ByteVector& bytes) {
    bytes.clear();
    const auto plainName = ToUtf8Strictly(name);
    const auto plainType = ToUtf8Strictly(type);
    if (bundle == nullptr || !IsPlainName(plainName) || !IsPlainName(plainType)) {
        return false;
    }
    const auto contents = ReadSmallFile(bundle->folder / "Contents" / "Resources" / (*plainName + "." + *plainType));
    if (!contents) {
        return false;
    }
    bytes.assign(contents->begin(), contents->end());
    return true;
}

}  // namespace zelcore::utility
