#pragma once

#include <lineup/Importer.h>

#include <memory>

namespace bridge {

/// The plug-in, loaded once for all producers that are alive at a time. Throws lineup::Error or
/// zelcore::BundleError when it is missing, not to be trusted or of no use. Any thread.
[[nodiscard]] std::shared_ptr<const lineup::Importer> SharedImporter();

}  // namespace bridge
