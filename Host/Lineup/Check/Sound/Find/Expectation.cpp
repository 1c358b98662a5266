#include "Host/Lineup/Check/Sound/Find/Expectation.h"

#include <lineup/ChannelLayout.h>
#include <lineup/Idents.h>
#include <lineup/Level.h>

namespace lineup::sound {

namespace {

Expectation ExpectationOf(const BarsAndToneInfo& clip) {
    Expectation expected;
    expected.channels = clip.numChannels;
    if (const Ident* const ident = FindIdent(clip)) {
        expected.sequence = ident->name;
        return expected;
    }
    expected.sequence = "tone";
    expected.frequencyHz = static_cast<double>(clip.frequency);
    expected.levelDb = DbFromGain(static_cast<double>(clip.amplitude));
    return expected;
}

}  // namespace

Expectation ExpectationOf(const CheckSettings& settings) {
    if (settings.settings) {
        return ExpectationOf(*settings.settings);
    }
    Expectation expected{settings.expect, settings.frequencyHz, settings.levelDb, {}};
    if (settings.channels) {
        expected.channels = FindChannelLayout(*settings.channels)->channels.size();
    }
    return expected;
}

}  // namespace lineup::sound
