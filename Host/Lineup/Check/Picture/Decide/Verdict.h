#pragma once

#include <lineup/Api.h>
#include <lineup/CheckReport.h>
#include <lineup/CheckSettings.h>
#include "Host/Lineup/Check/Picture/Examination.h"
#include "Host/Lineup/Check/Picture/FrameSeries.h"

#include <optional>
#include <string>

namespace lineup::picture {

struct PictureFindings;

/// What there is to decide on.
struct PictureCase {
    const Examination* seen;
    const FrameSeries* series;
    const decoding::Picture* facts;
    const CheckSettings* settings;
};

/// A fault of the picture, with the unit of its kind.
[[nodiscard]] CheckFault MakePictureFault(const std::string& id, std::optional<double> measured,
                                          std::optional<double> expected, const std::string& text,
                                          std::optional<double> at = {});

/// What a patch may be off by and is right: the tolerance of patches, and half a code of the file, for converters
/// round. 8-bit codes.
[[nodiscard]] double TrifleOf(const PictureCase& known);

/// Fills in what the card, its place, its patches and its frames turn out to be, and what is wrong with them.
LINEUP_API void Decide(const PictureCase& known, PictureFindings& findings);

/// The rooms of that, in their order.
void DecideCard(const PictureCase& known, PictureFindings& findings);
/// Gives whether the bars are laid out like the clip's, and are another maker's.
bool DecideColours(const PictureCase& known, PictureFindings& findings);
void DecidePlace(const PictureCase& known, bool isOtherMakers, PictureFindings& findings);
void DecideQuality(const PictureCase& known, bool isOtherMakers, PictureFindings& findings);
void DecideFrames(const PictureCase& known, PictureFindings& findings);

}  // namespace lineup::picture
