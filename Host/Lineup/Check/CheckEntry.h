#pragma once

#include <lineup/Check.h>
#include <lineup/Watch.h>

#include <memory>
#include <string>

/// What the library that checks offers. It is larger than all else that stands behind liblineup, and is loaded when a
/// recording is first checked.
namespace lineup {
inline namespace parts {

/// The file name of the library; it belongs to liblineup (see DynamicLibrary::Companion).
inline constexpr const char* kCheckLibraryName = "liblineup-check.so";

/// What Check does; the report is empty before.
using CheckFunction = void(const std::string& recording, const std::shared_ptr<const Importer>& importer,
                           const CheckSettings& settings, const CheckProgress& progress, CheckReport& report);
inline constexpr const char* kCheckName = "lineupCheck";

/// What Watch does; the report is empty before.
using WatchFunction = void(const std::string& recording, const std::shared_ptr<const Importer>& importer,
                           const CheckSettings& settings, const WatchListener& listener, WatchReport& report);
inline constexpr const char* kWatchName = "lineupWatch";

}  // namespace parts
}  // namespace lineup
