#include "Src/BarsAndToneImporter/BarsAndToneImporter.h"
#include "Src/BarsAndToneImporter/BarsAndToneInfo.h"
#include "Tests/Src/ToneGenerator/IdentRun.h"
#include "Tests/Src/ToneGenerator/ToneModel.h"

#include <gtest/gtest.h>

namespace {

using model::Ident;

IdentifierFormat FormatOf(Ident ident) {
    switch (ident) {
        case Ident::kStereo1000:
            return EBUStereo1000;
        case Ident::kStereo400:
            return EBUStereo400;
        case Ident::kMultichannel:
            return EBUMultichannel;
        case Ident::kBlits:
            return BLITS5_1;
    }
    return EBUStereo1000;
}

TEST(IdentSettings, AmplitudeAndFrequencyOfTheSteadyToneDoNotReachTheIdents) {
    // 2.7 s to 3.7 s: the stereo gap and one burst of each 5.1 sequence.
    const model::Request request{model::kTicksPerSampleAt48kHz, 129600 * model::kTicksPerSampleAt48kHz, 48000};
    for (const Ident ident : model::kIdents) {
        const auto expected = model::Render(ident, request);
        for (const float amplitude : {0.0F, 0.25F, 1.0F}) {
            for (const float frequency : {20.0F, 1000.0F}) {
                BarsAndToneInfo settings;
                settings.identifyChannels = 1;
                settings.identifierFormat = FormatOf(ident);
                settings.amplitude = amplitude;
                settings.frequency = frequency;
                test::GuardedChannels channels(model::kBufferCount, 48000);
                imImportAudioRec7 record{129600, 48000, channels.Pointers(), nullptr, &settings};
                ASSERT_EQ(barsImportAudio(&record), 0);
                for (std::size_t c = 0; c < expected.size(); ++c) {
                    EXPECT_TRUE(model::SameBits(expected[c], channels[c].Samples()))
                        << model::Name(ident) << ", channel " << c << ", amplitude " << amplitude;
                }
                EXPECT_TRUE(model::NothingElseIsWritten(channels, expected.size()));
            }
        }
    }
}

}  // namespace
