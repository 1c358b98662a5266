#include "Apps/version/BuildVersion.h"

namespace apps {

std::string BuildVersion() {
    return LINEUP_VERSION;
}

}  // namespace apps
