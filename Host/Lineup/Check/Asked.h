#pragma once

#include <lineup/CheckSettings.h>

namespace lineup {

inline namespace parts {

/// Whether these parts are looked at.
[[nodiscard]] inline bool ListensToSound(const CheckSettings& settings) {
    return settings.expect != "none";
}
[[nodiscard]] inline bool LooksAtPicture(const CheckSettings& settings) {
    return settings.card != "none";
}

/// Whether a line-up in the sound was asked for by name: a card that is right does not stand for it then.
[[nodiscard]] inline bool NamesSound(const CheckSettings& settings) {
    return settings.expect != "auto" && ListensToSound(settings);
}

/// The same for a stretch that was cut out already.
[[nodiscard]] inline CheckSettings WithoutTimes(CheckSettings settings) {
    settings.fromSeconds.reset();
    settings.forSeconds.reset();
    return settings;
}

}  // namespace parts

}  // namespace lineup
