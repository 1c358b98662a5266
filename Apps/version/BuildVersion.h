#pragma once

#include <string>

namespace apps {

/// The version that the programs were built as: "1.2.3", of a later commit "1.2.3+git4.0123456789".
[[nodiscard]] std::string BuildVersion();

}  // namespace apps
