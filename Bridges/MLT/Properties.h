#pragma once

#include <span>
#include <string_view>

namespace bridge {

/// The producer's properties as a person sets them. The metadata file says the same to editors; a test holds
/// the two together.

struct NumberProperty {
    const char* name;
    double lowest;
    double highest;
    double fallback;  ///< for text that is not a number
    std::string_view unit;
};

struct NameProperty {
    const char* name;
    std::span<const std::string_view> names;  ///< the first is the default
};

/// Hz; below half the sample rate that the sound is asked for at.
inline constexpr NumberProperty kFrequency{"frequency", 1, 24000, 1000, "Hz"};

/// dBFS of the peak. When it is not set the gain is exactly 0.25, which this default stands for.
inline constexpr NumberProperty kLevel{"level", -300, 0, -12.04, "dBFS"};

/// "auto" is the HD card from 720 lines on.
[[nodiscard]] const NameProperty& CardProperty();

/// "profile" converts the card's numbers here, exactly, when the profile is BT.709; "601" hands them on as they are,
/// for the framework to convert.
[[nodiscard]] const NameProperty& MatrixProperty();

/// The bits of a picture that is asked for in 16: those below are zero, so that a consumer that writes fewer has
/// nothing left to round.
[[nodiscard]] const NameProperty& DepthProperty();

/// A steady tone, or one of the idents by its name.
[[nodiscard]] const NameProperty& SoundProperty();

/// "auto" is stereo for a tone, and what an ident is made for.
[[nodiscard]] const NameProperty& ChannelsProperty();

}  // namespace bridge
