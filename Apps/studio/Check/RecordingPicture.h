#pragma once

#include "Apps/studio/Views/PictureLoader.h"

#include <QString>
#include <memory>

namespace lineup {

inline namespace parts {
struct DecodedPicture;
}

}  // namespace lineup

namespace studio {

/// What was decoded, as a player shows it.
[[nodiscard]] std::shared_ptr<const CardPicture> MakeRecordingPicture(const lineup::DecodedPicture& picture);

/// The picture that a recording shows at `seconds` from its start, by what the file says of its codes; null where it
/// has none. Reading begins at the last key picture before it; where a recording does not let itself be read from
/// there, it begins at the start, and of a long one only those pictures are decoded that a check looks at. Throws
/// lineup::Cancelled when it is no longer wanted, and what tells why the recording cannot be read. Any thread.
[[nodiscard]] std::shared_ptr<const CardPicture> ReadRecordingPicture(const QString& file, double seconds,
                                                                      const PictureLoader::IsWanted& isWanted);

}  // namespace studio
