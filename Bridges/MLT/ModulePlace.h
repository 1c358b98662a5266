#pragma once

#include <filesystem>

namespace bridge {

/// The folder that this module was built or installed into: the one above the "lib" that holds it. The bundle
/// and the metadata are found from there. Links to the module are followed first, so that a folder of links to
/// modules serves as well. Throws lineup::Error when the module lies in no such folder.
[[nodiscard]] std::filesystem::path ModulePrefix();

/// The description of the producer for editors.
[[nodiscard]] std::filesystem::path MetadataFile();

}  // namespace bridge
