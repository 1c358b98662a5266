#pragma once

#include "Apps/studio/Views/PictureLoader.h"

#include <QString>
#include <memory>

namespace studio {

/// The picture that a recording shows at `seconds` from its start, by what the file says of its codes; null where it
/// has none. The recording is read from its start, and of a long one only those pictures are decoded that a check looks
/// at. Throws lineup::Cancelled when it is no longer wanted, and what tells why the recording cannot be read. Any
/// thread.
[[nodiscard]] std::shared_ptr<const CardPicture> ReadRecordingPicture(const QString& file, double seconds,
                                                                      const PictureLoader::IsWanted& isWanted);

}  // namespace studio
