#include <lineup/CheckReport.h>

#include <algorithm>
#include <array>

namespace lineup {

namespace {

constexpr std::array kKinds = {
    CheckFaultKind{"channel-missing", CheckPart::Sound, "silence where a channel is due", ""},
    CheckFaultKind{"channels-swapped", CheckPart::Sound, "the channels are there, at other inputs", ""},
    CheckFaultKind{"channel-duplicated", CheckPart::Sound, "one channel at two inputs", ""},
    CheckFaultKind{"channel-mixed", CheckPart::Sound, "a channel is also heard at another input, or a fold-down", "dB"},
    CheckFaultKind{"polarity-inverted", CheckPart::Sound, "upside down", ""},
    CheckFaultKind{"level-wrong", CheckPart::Sound, "all channels louder or softer alike", "dB"},
    CheckFaultKind{"level-unbalanced", CheckPart::Sound, "some channels louder or softer than the others", "dB"},
    CheckFaultKind{"level-changes", CheckPart::Sound, "the level moves: gain riding, a limiter", "dB"},
    CheckFaultKind{"delay", CheckPart::Sound, "channels late or early against each other", "samples"},
    CheckFaultKind{"speed-wrong", CheckPart::Sound, "too fast or too slow", "ppm"},
    CheckFaultKind{"speed-unsteady", CheckPart::Sound, "wow, flutter, a clock that wanders", "ppm"},
    CheckFaultKind{"dropout", CheckPart::Sound, "a stretch is silent or damaged", "s"},
    CheckFaultKind{"samples-lost", CheckPart::Sound, "time jumps ahead", "samples"},
    CheckFaultKind{"samples-repeated", CheckPart::Sound, "time jumps back", "samples"},
    CheckFaultKind{"click", CheckPart::Sound, "single wrong samples", ""},
    CheckFaultKind{"clipped", CheckPart::Sound, "tops are cut off", "dBFS"},
    CheckFaultKind{"distorted", CheckPart::Sound, "harmonics", "dB"},
    CheckFaultKind{"noise", CheckPart::Sound, "noise under the tone or in the gaps", "dBFS"},
    CheckFaultKind{"hum", CheckPart::Sound, "50 or 60 Hz and their multiples", "dBFS"},
    CheckFaultKind{"dc-offset", CheckPart::Sound, "the signal does not lie around zero", "full scale"},
    CheckFaultKind{"bits-truncated", CheckPart::Sound, "fewer bits than the file has, without dither", "bits"},
    CheckFaultKind{"sequence-other", CheckPart::Sound, "another sequence than the one asked for", ""},
    CheckFaultKind{"card-missing", CheckPart::Picture, "no card", ""},
    CheckFaultKind{"card-other", CheckPart::Picture, "another card than the one asked for", ""},
    CheckFaultKind{"matrix-wrong", CheckPart::Picture, "the numbers are those of another matrix than is due", ""},
    CheckFaultKind{"range-wrong", CheckPart::Picture, "limited range stretched, or full range squeezed", ""},
    CheckFaultKind{"tags-wrong", CheckPart::Picture, "the numbers are right, the tags name another colour space", ""},
    CheckFaultKind{"gain-wrong", CheckPart::Picture, "white moved", "%"},
    CheckFaultKind{"lift-wrong", CheckPart::Picture, "black moved", "%"},
    CheckFaultKind{"gamma-wrong", CheckPart::Picture, "the middle moved", "exponent"},
    CheckFaultKind{"saturation-wrong", CheckPart::Picture, "colours are stronger or weaker", "%"},
    CheckFaultKind{"hue-wrong", CheckPart::Picture, "colours are turned", "degrees"},
    CheckFaultKind{"chroma-swapped", CheckPart::Picture, "Cb stands for Cr", ""},
    CheckFaultKind{"chroma-missing", CheckPart::Picture, "no colour", ""},
    CheckFaultKind{"blacks-crushed", CheckPart::Picture, "what lies below black is gone", "code"},
    CheckFaultKind{"whites-clipped", CheckPart::Picture, "what lies above white is gone", "code"},
    CheckFaultKind{"bits-truncated", CheckPart::Picture, "fewer steps in the ramp than the depth has", "bits"},
    CheckFaultKind{"chroma-subsampled", CheckPart::Picture, "colour is coarser than the file's format", "pixels"},
    CheckFaultKind{"chroma-shifted", CheckPart::Picture, "colour lies beside its luma", "pixels"},
    CheckFaultKind{"scaled", CheckPart::Picture, "the card is larger or smaller than the frame", "pixels"},
    CheckFaultKind{"shifted", CheckPart::Picture, "the card lies beside its place", "pixels"},
    CheckFaultKind{"cropped", CheckPart::Picture, "the card's edges are gone", "pixels"},
    CheckFaultKind{"mirrored", CheckPart::Picture, "left and right are turned over", ""},
    CheckFaultKind{"flipped", CheckPart::Picture, "top and bottom are turned over", ""},
    CheckFaultKind{"soft", CheckPart::Picture, "edges wider than the path's depth and format explain", "pixels"},
    CheckFaultKind{"picture-noise", CheckPart::Picture, "noise in the patches", "codes"},
    CheckFaultKind{"picture-changes", CheckPart::Picture, "frames differ: black, frozen after, damaged", "frames"},
    CheckFaultKind{"lengths-differ", CheckPart::Both, "picture and sound are not as long as each other", "s"},
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
