#pragma once

#include <lineup/Importer.h>

#include <memory>
#include <string>

namespace gstreamer {

/// The plug-in, loaded once for all elements that are open at a time: the bundle at `path`, or where that is empty the
/// one that was installed with the library. Throws lineup::Error or zelcore::BundleError when it is missing, not to be
/// trusted or of no use. Any thread.
[[nodiscard]] std::shared_ptr<const lineup::Importer> ImporterAt(const std::string& path);

}  // namespace gstreamer
