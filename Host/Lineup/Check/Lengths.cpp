#include "Host/Lineup/Check/Lengths.h"

#include <fmt/format.h>

#include <cmath>

namespace lineup {

namespace {

constexpr double kCodecFrames = 2;    // of a lossy codec: it begins with one of silence, and fills up the last
constexpr double kCodecFrame = 1536;  // samples, the longest that is common

}  // namespace

std::optional<CheckFault> LengthFault(const RecordingReader& reader, std::int64_t samples,
                                      const picture::PictureFindings& pictures, const CheckSettings& settings) {
    const bool isPart = settings.fromSeconds || settings.forSeconds || reader.EndedBecause();
    if (isPart || !pictures.length || pictures.isStill || pictures.length->frames < 2 || pictures.frameRate <= 0) {
        return std::nullopt;
    }
    const double rate = reader.SampleRate();
    double tolerance = ToleranceOf(settings, "lengths") / pictures.frameRate;
    if (reader.Lossy().value_or(true)) {
        tolerance += kCodecFrames * kCodecFrame / rate;
    }
    const double sound = static_cast<double>(samples) / rate;
    const double picture = pictures.length->end - pictures.length->start;
    const double late = pictures.length->start;
    const bool isLate = std::abs(late) > tolerance;
    if (!isLate && std::abs(sound - picture) <= tolerance) {
        return std::nullopt;
    }
    const std::string text =
        isLate ? fmt::format("The picture begins {:.3f} s {} the sound; it lasts {:.3f} s, the sound {:.3f} s.",
                             std::abs(late), late > 0 ? "after" : "before", picture, sound)
               : fmt::format("The sound lasts {:.3f} s, the picture {:.3f} s.", sound, picture);
    return CheckFault{.id = "lengths-differ",
                      .part = CheckPart::Both,
                      .inputs = {},
                      .channels = {},
                      .measured = isLate ? late : sound - picture,
                      .expected = 0,
                      .unit = "s",
                      .at = {},
                      .text = text};
}

}  // namespace lineup
