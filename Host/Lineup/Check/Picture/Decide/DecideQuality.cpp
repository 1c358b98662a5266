#include "Host/Lineup/Check/Picture/CheckPicture.h"
#include "Host/Lineup/Check/Picture/Decide/Verdict.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace lineup::picture {

namespace {

constexpr int kDeepest = 12;           // bits: files of more hold pictures of fewer as a matter of course
constexpr double kBanded = 2.5;        // times fewer codes in the ramp: a lower gain and clipping take some too
constexpr double kCoarserThan = 2.9;   // samples of colour
constexpr double kCoarserHalf = 3.6;   // pixels: of 4:4:4, which 4:2:2 may have become on the way; 4:1:1 has 4 and more
constexpr double kShifted = 1.0;       // pixels: what is said of where colour lies is not always true
constexpr double kShiftOfBlur = 0.35;  // of an edge of colour
constexpr double kOwnScale = 1.15;
constexpr double kCoarselyCoded = 15;  // % of what changes inside of patches, that lies on a grid
constexpr double kSmearedEdges = 1.2;  // times as wide as those of other recordings may be
constexpr double kRings = 5;           // % of an edge's step
constexpr double kBlocks = 30;         // % of what changes inside of patches

// A card that was made larger is soft, and its colour coarse, for that reason.
bool IsEnlarged(const PictureCase& known) {
    const Place& place = known.seen->geometry.place;
    return place.width > known.seen->head.width * kOwnScale || place.height > known.seen->head.height * kOwnScale;
}

// By a codec that may lose something, as H.264 may or may not, and has left its blocks.
bool IsCoarselyCoded(const PictureCase& known) {
    return (known.facts->flags & decoding::kLossless) == 0 && known.seen->blocking.value_or(0) > kCoarselyCoded;
}

// Bits that would do for as many steps as the ramp has. What a lossy codec leaves of it says nothing.
double BitsOfSteps(const PictureCase& known, const RampSteps& ramp) {
    const double share = static_cast<double>(ramp.due) / ramp.distinct;
    const bool isLossless = (known.facts->flags & decoding::kLossless) != 0;
    return isLossless && share > kBanded ? ramp.bits - std::log2(share) : ramp.bits;
}

void DecideBits(const PictureCase& known, PictureFindings& findings) {
    const auto& ramp = known.seen->ramp;
    if (!ramp || ramp->bits > kDeepest) {
        return;
    }
    if (ramp->used < ramp->bits) {
        findings.faults.push_back(MakePictureFault(
            "bits-truncated", ramp->used, ramp->bits,
            fmt::format("The ramp has no more than {} bits, in a file of {}.", ramp->used, ramp->bits)));
        return;
    }
    const double bits = BitsOfSteps(known, *ramp);
    if (bits < ramp->bits) {
        findings.faults.push_back(
            MakePictureFault("bits-truncated", bits, ramp->bits,
                             fmt::format("The ramp has bands: {} codes, where {} bits have {} in the same place.",
                                         ramp->distinct, ramp->bits, ramp->due)));
    }
}

void DecideSoftness(const PictureCase& known, PictureFindings& findings) {
    const double across = known.seen->softAcross.value_or(0);
    const double down = known.seen->softDown.value_or(0);
    const double widest = std::max(across, down);
    const double most = ToleranceOf(*known.settings, "softness") * (IsCoarselyCoded(known) ? kSmearedEdges : 1);
    if (widest > most && !IsEnlarged(known)) {
        findings.faults.push_back(MakePictureFault(
            "soft", widest, 1, fmt::format("Edges are {:.1f} pixels wide across and {:.1f} down.", across, down)));
    }
}

void DecideChroma(const PictureCase& known, PictureFindings& findings) {
    const ChromaShape& chroma = known.seen->chroma;
    const double stepX = 1U << known.seen->head.subsampleWidth;
    const double stepY = 1U << known.seen->head.subsampleHeight;
    // Where a codec left little of the edges, their middles say little.
    const double blur = std::max(chroma.widthAcross.value_or(0) / stepX, chroma.widthDown.value_or(0) / stepY);
    const auto isShifted = [blur](double off, double step) {
        return std::abs(off) > std::max(kShifted, step * std::max(0.6, kShiftOfBlur * blur));
    };
    // Samples that were turned over with the picture lie on the other one of their pixels.
    const double turned = known.seen->geometry.place.mirrored ? stepX - 1 : 0;
    const double down = chroma.down.value_or(0);
    const double seen = chroma.right.value_or(0);
    const double right = seen < 0 ? std::min(seen + turned, 0.0) : seen;
    if (isShifted(right, stepX) || isShifted(down, stepY)) {
        findings.faults.push_back(MakePictureFault(
            "chroma-shifted", std::abs(right) > std::abs(down) ? right : down, 0,
            fmt::format("Colour lies {:.1f} pixels to the right of its luma and {:.1f} below it.", right, down)));
    }
    const double softAcross = std::max(1.0, known.seen->softAcross.value_or(1));
    const double softDown = std::max(1.0, known.seen->softDown.value_or(1));
    const auto most = [](double step) { return step > 1 ? kCoarserThan * step : kCoarserHalf; };
    const bool isCoarse = chroma.widthAcross.value_or(0) > most(stepX) * softAcross ||
                          chroma.widthDown.value_or(0) > most(stepY) * softDown;
    if (isCoarse && !IsEnlarged(known)) {
        findings.faults.push_back(MakePictureFault(
            "chroma-subsampled", std::max(chroma.widthAcross.value_or(0), chroma.widthDown.value_or(0)), {},
            fmt::format(
                "Colour is coarser than the file's format: its edges are {:.1f} pixels wide across, {:.1f} down.",
                chroma.widthAcross.value_or(0), chroma.widthDown.value_or(0))));
    }
}

// What codecs and scalers always do is told, and is not a fault.
void TellCoding(const PictureCase& known, PictureFindings& findings) {
    const Examination& seen = *known.seen;
    findings.picture->quality = {.edgeAcross = seen.softAcross,
                                 .edgeDown = seen.softDown,
                                 .ringing = seen.ringing,
                                 .blocking = seen.blocking,
                                 .noise = seen.noise};
    const auto tell = [&findings](const char* id, const std::string& text) {
        findings.notes.push_back({.id = id, .part = CheckPart::Picture, .text = text});
    };
    if (seen.ringing.value_or(0) > kRings) {
        tell("ringing", fmt::format("Edges ring: luma goes beyond its level by {:.1f} % of the step.", *seen.ringing));
    }
    if (seen.blocking.value_or(0) > kBlocks) {
        tell("blocking",
             fmt::format("There are blocks: {:.0f} % of what changes inside of patches lies on a grid of 8 pixels.",
                         *seen.blocking));
    }
}

}  // namespace

void DecideQuality(const PictureCase& known, bool isOtherMakers, PictureFindings& findings) {
    if (!isOtherMakers) {
        DecideBits(known, findings);
    }
    DecideSoftness(known, findings);
    DecideChroma(known, findings);
    TellCoding(known, findings);
    if (known.seen->noise > ToleranceOf(*known.settings, "picture-noise")) {
        findings.faults.push_back(
            MakePictureFault("picture-noise", known.seen->noise, 0,
                             fmt::format("There is noise of {:.1f} codes in the patches, r.m.s.", known.seen->noise)));
    }
}

}  // namespace lineup::picture
