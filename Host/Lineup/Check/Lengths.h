#pragma once

#include <lineup/CheckReport.h>
#include <lineup/CheckSettings.h>
#include "Host/Lineup/Check/Picture/CheckPicture.h"
#include "Host/Lineup/Check/Reader/RecordingReader.h"

#include <cstdint>
#include <optional>

namespace lineup {

/// The fault that picture and sound are not as long as each other, or do not begin together. `samples` is how many were
/// read of the whole recording. Nothing where they are, or where it cannot be told.
[[nodiscard]] std::optional<CheckFault> LengthFault(const RecordingReader& reader, std::int64_t samples,
                                                    const picture::PictureFindings& pictures,
                                                    const CheckSettings& settings);

}  // namespace lineup
