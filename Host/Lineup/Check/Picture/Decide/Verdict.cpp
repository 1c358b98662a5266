#include "Host/Lineup/Check/Picture/Decide/Verdict.h"

#include "Host/Lineup/Check/Picture/CheckPicture.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace lineup::picture {

CheckFault MakePictureFault(const std::string& id, std::optional<double> measured, std::optional<double> expected,
                            const std::string& text, std::optional<double> at) {
    const CheckFaultKind* const kind = FindCheckFaultKind(id, CheckPart::Picture);
    return {.id = id,
            .part = CheckPart::Picture,
            .inputs = {},
            .channels = {},
            .measured = measured,
            .expected = expected,
            .unit = kind != nullptr ? std::string(kind->unit) : "",
            .at = at,
            .text = text};
}

double TrifleOf(const PictureCase& known) {
    return ToleranceOf(*known.settings, "patches") + std::ldexp(1.0, 8 - static_cast<int>(known.seen->head.bits)) / 2;
}

void DecideFrames(const PictureCase& known, PictureFindings& findings) {
    const auto changes = known.series->Changes();
    if (changes.empty()) {
        return;
    }
    const auto black = std::ranges::count_if(changes, &FrameSeries::Change::isBlack);
    const auto damaged = std::ranges::count_if(changes, &FrameSeries::Change::isDamaged);
    const auto all = static_cast<std::ptrdiff_t>(changes.size());
    const char* const how = black == all ? " black" : damaged == all ? " damaged" : " unlike the others";
    const bool isSampled = findings.length && findings.length->frames > known.series->Frames();
    findings.faults.push_back(MakePictureFault(
        "picture-changes", static_cast<double>(all), 0,
        fmt::format("{}{} of {} frames that were looked at {}{}, the first at {:.3f} s.", isSampled ? "At least " : "",
                    all, known.series->Frames(), all == 1 ? "is" : "are", how, std::max(0.0, changes.front().seconds)),
        std::max(0.0, changes.front().seconds)));
}

void Decide(const PictureCase& known, PictureFindings& findings) {
    DecideCard(known, findings);
    const bool isOtherMakers = DecideColours(known, findings);
    DecidePlace(known, isOtherMakers, findings);
    DecideQuality(known, isOtherMakers, findings);
    DecideFrames(known, findings);
}

}  // namespace lineup::picture
