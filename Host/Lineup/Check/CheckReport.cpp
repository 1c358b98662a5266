#include <lineup/CheckReport.h>

#include <algorithm>
#include <array>

namespace lineup {

namespace {

constexpr std::array kKinds = {
    CheckFaultKind{"channel-missing", CheckPart::kSound, "silence where a channel is due", ""},
    CheckFaultKind{"channels-swapped", CheckPart::kSound, "the channels are there, at other inputs", ""},
    CheckFaultKind{"channel-duplicated", CheckPart::kSound, "one channel at two inputs", ""},
    CheckFaultKind{"channel-mixed", CheckPart::kSound, "a channel is also heard at another input, or a fold-down",
                   "dB"},
    CheckFaultKind{"polarity-inverted", CheckPart::kSound, "upside down", ""},
    CheckFaultKind{"level-wrong", CheckPart::kSound, "all channels louder or softer alike", "dB"},
    CheckFaultKind{"level-unbalanced", CheckPart::kSound, "some channels louder or softer than the others", "dB"},
    CheckFaultKind{"level-changes", CheckPart::kSound, "the level moves: gain riding, a limiter", "dB"},
    CheckFaultKind{"delay", CheckPart::kSound, "channels late or early against each other", "samples"},
    CheckFaultKind{"speed-wrong", CheckPart::kSound, "too fast or too slow", "ppm"},
    CheckFaultKind{"speed-unsteady", CheckPart::kSound, "wow, flutter, a clock that wanders", "ppm"},
    CheckFaultKind{"dropout", CheckPart::kSound, "a stretch is silent or damaged", "s"},
    CheckFaultKind{"samples-lost", CheckPart::kSound, "time jumps ahead", "samples"},
    CheckFaultKind{"samples-repeated", CheckPart::kSound, "time jumps back", "samples"},
    CheckFaultKind{"click", CheckPart::kSound, "single wrong samples", ""},
    CheckFaultKind{"clipped", CheckPart::kSound, "tops are cut off", "dBFS"},
    CheckFaultKind{"distorted", CheckPart::kSound, "harmonics", "dB"},
    CheckFaultKind{"noise", CheckPart::kSound, "noise under the tone or in the gaps", "dBFS"},
    CheckFaultKind{"hum", CheckPart::kSound, "50 or 60 Hz and their multiples", "dBFS"},
    CheckFaultKind{"dc-offset", CheckPart::kSound, "the signal does not lie around zero", "full scale"},
    CheckFaultKind{"bits-truncated", CheckPart::kSound, "fewer bits than the file has, without dither", "bits"},
    CheckFaultKind{"sequence-other", CheckPart::kSound, "another sequence than the one asked for", ""},
    CheckFaultKind{"card-missing", CheckPart::kPicture, "no card", ""},
    CheckFaultKind{"card-other", CheckPart::kPicture, "another card than the one asked for", ""},
    CheckFaultKind{"matrix-wrong", CheckPart::kPicture, "the numbers are those of another matrix than is due", ""},
    CheckFaultKind{"range-wrong", CheckPart::kPicture, "limited range stretched, or full range squeezed", ""},
    CheckFaultKind{"tags-wrong", CheckPart::kPicture, "the numbers are right, the tags name another colour space", ""},
    CheckFaultKind{"gain-wrong", CheckPart::kPicture, "white moved", "%"},
    CheckFaultKind{"lift-wrong", CheckPart::kPicture, "black moved", "%"},
    CheckFaultKind{"gamma-wrong", CheckPart::kPicture, "the middle moved", "exponent"},
    CheckFaultKind{"saturation-wrong", CheckPart::kPicture, "colours are stronger or weaker", "%"},
    CheckFaultKind{"hue-wrong", CheckPart::kPicture, "colours are turned", "degrees"},
    CheckFaultKind{"chroma-swapped", CheckPart::kPicture, "Cb stands for Cr", ""},
    CheckFaultKind{"chroma-missing", CheckPart::kPicture, "no colour", ""},
    CheckFaultKind{"blacks-crushed", CheckPart::kPicture, "what lies below black is gone", "code"},
    CheckFaultKind{"whites-clipped", CheckPart::kPicture, "what lies above white is gone", "code"},
    CheckFaultKind{"bits-truncated", CheckPart::kPicture, "fewer steps in the ramp than the depth has", "bits"},
    CheckFaultKind{"chroma-subsampled", CheckPart::kPicture, "colour is coarser than the file's format", "pixels"},
    CheckFaultKind{"chroma-shifted", CheckPart::kPicture, "colour lies beside its luma", "pixels"},
    CheckFaultKind{"scaled", CheckPart::kPicture, "the card is larger or smaller than the frame", "pixels"},
    CheckFaultKind{"shifted", CheckPart::kPicture, "the card lies beside its place", "pixels"},
    CheckFaultKind{"cropped", CheckPart::kPicture, "the card's edges are gone", "pixels"},
    CheckFaultKind{"mirrored", CheckPart::kPicture, "left and right are turned over", ""},
    CheckFaultKind{"flipped", CheckPart::kPicture, "top and bottom are turned over", ""},
    CheckFaultKind{"soft", CheckPart::kPicture, "edges wider than the path's depth and format explain", "pixels"},
    CheckFaultKind{"picture-noise", CheckPart::kPicture, "noise in the patches", "codes"},
    CheckFaultKind{"picture-changes", CheckPart::kPicture, "frames differ: black, frozen after, damaged", "frames"},
    CheckFaultKind{"lengths-differ", CheckPart::kBoth, "picture and sound are not as long as each other", "s"},
};

}  // namespace

std::string_view CheckVerdictName(CheckVerdict verdict) {
    constexpr std::array<std::string_view, 3> kNames = {"right", "faults", "cannot-tell"};
    return kNames.at(static_cast<std::size_t>(verdict));
}

std::string_view CheckPartName(CheckPart part) {
    constexpr std::array<std::string_view, 3> kNames = {"sound", "picture", "both"};
    return kNames.at(static_cast<std::size_t>(part));
}

std::span<const CheckFaultKind> CheckFaultKinds() {
    return kKinds;
}

const CheckFaultKind* FindCheckFaultKind(std::string_view id, CheckPart part) {
    const auto* const found =
        std::ranges::find_if(kKinds, [&](const CheckFaultKind& kind) { return kind.id == id && kind.part == part; });
    return found == kKinds.end() ? nullptr : found;
}

}  // namespace lineup
