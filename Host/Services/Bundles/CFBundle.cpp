#include "Host/Interface/Platform/CFBundle.h"

#include "Host/Services/Bundles/LoadedBundles.h"

CFBundleRef CFBundleGetBundleWithIdentifier(CFStringRef identifier) {
    for (CFBundleRef bundle : zelcore::LoadedBundles()) {
        if (bundle->identifier == identifier) {
            return bundle;
        }
    }
    return nullptr;
}
