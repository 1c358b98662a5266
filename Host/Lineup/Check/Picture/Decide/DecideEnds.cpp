#include "Host/Lineup/Check/Picture/Decide/DecideEnds.h"

#include "Host/Lineup/Check/Picture/CheckPicture.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace lineup::picture {

namespace {

constexpr double kCrushed = 0.6;   // of the way from below black to black
constexpr double kLeastStep = 2;   // codes between the two
constexpr double kMostColour = 2;  // codes: a clipped white has none
constexpr double kCoarse = 2.5;    // times the tolerance: what a coarse codec moves a patch by
constexpr double kMostUneven = 1;  // codes: something that lies over the patch is not that even

// The patch below black, against black beside it.
void DecideBlack(const PictureCase& known, const Chain& chain, const CodeScale& scale, PictureFindings& findings) {
    const auto& patches = known.seen->patches;
    const auto below =
        std::ranges::find_if(patches, [](const auto& patch) { return patch.patch->name == "below black"; });
    if (below == patches.end() || chain.tone == ToneStep::BlackClipped) {
        return;
    }
    const double due = chain.Codes(scale, below->patch->rgb)[0];
    const double black = chain.Codes(scale, {0, 0, 0})[0];
    const double share = black - due > 0 ? (below->codes[0] - due) / (black - due) : 0;
    if (black - due >= kLeastStep && due >= 1 && share > kCrushed) {
        const double code = below->codes[0];
        findings.faults.push_back(MakePictureFault(
            "blacks-crushed", code, due,
            fmt::format("What lies below black is gone: code {:.1f} is there in place of {:.1f}.", code, due)));
    }
}

// A card has few whites, so that the others hide a clipped one: it is too dark, and lighter than all the rest.
void DecideWhite(const PictureCase& known, const Chain& chain, const CodeScale& scale, PictureFindings& findings) {
    const double white = chain.Codes(scale, {1, 1, 1})[0];
    if (chain.tone == ToneStep::WhiteClipped || white >= scale.top) {
        return;
    }
    double code = 0;
    double next = 0;
    bool isEven = true;
    for (const MeasuredPatch& patch : known.seen->patches) {
        if (patch.patch->name.starts_with("100 % white")) {
            const double colour = std::max(std::abs(patch.codes[1] - 128), std::abs(patch.codes[2] - 128));
            isEven = isEven && colour < kMostColour && patch.uneven < kMostUneven;
            code = std::max(code, patch.codes[0]);
        } else {
            next = std::max(next, chain.Codes(scale, patch.patch->rgb)[0]);
        }
    }
    const bool isLossy = (known.facts->flags & decoding::kLossy) != 0;
    const double tolerance = TrifleOf(known) * (isLossy ? kCoarse : 1);
    if (isEven && code > next - tolerance && code < white - tolerance) {
        findings.faults.push_back(
            MakePictureFault("whites-clipped", code, white,
                             fmt::format("White is cut off: code {:.1f} is there in place of {:.1f}.", code, white)));
    }
}

}  // namespace

void DecideEnds(const PictureCase& known, const Chain& chain, const CodeScale& scale, PictureFindings& findings) {
    DecideBlack(known, chain, scale, findings);
    DecideWhite(known, chain, scale, findings);
}

}  // namespace lineup::picture
