// An element on the way that loses buffers, and what the check says of what is left.
#include "Tests/Bridges/GStreamer/Framework.h"
#include "Tests/Host/Lineup/Check/Sound/SoundOf.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

namespace {

constexpr double kSampleRate = 48000;
constexpr int kSamplesOfBuffer = 1024;
constexpr int kSeconds = 24;

// Loses one buffer in fifty, none at the very ends, and no other until some seconds later: of two between the same
// edges of a tone it is known how much both are together.
struct Losing {
    std::uint32_t random = 7;
    int number = 0;
    int kept = 0;
    std::vector<double> places;  // s of what is left

    bool Loses() {
        constexpr int kFirst = 200;
        constexpr int kLast = kSeconds * 48000 / kSamplesOfBuffer - 200;
        constexpr double kApart = 4;  // s
        constexpr std::uint32_t kOneIn = 50;
        random = random * 1664525U + 1013904223U;
        const double place = kept * kSamplesOfBuffer / kSampleRate;
        const bool isAlone = places.empty() || place > places.back() + kApart;
        const bool isLost = ++number > kFirst && number < kLast && isAlone && (random >> 8U) % kOneIn == 0;
        if (isLost) {
            places.push_back(place);
        } else {
            ++kept;
        }
        return isLost;
    }
};

GstPadProbeReturn OnBuffer(GstPad* /*pad*/, GstPadProbeInfo* /*info*/, gpointer losing) {
    return static_cast<Losing*>(losing)->Loses() ? GST_PAD_PROBE_DROP : GST_PAD_PROBE_OK;
}

test::Sound Deinterleaved(const std::string& bytes, std::size_t channels) {
    test::Sound sound(channels, std::vector<float>(bytes.size() / sizeof(float) / channels));
    for (std::size_t i = 0; i < sound[0].size() * channels; ++i) {
        std::memcpy(&sound[i % channels][i / channels], bytes.data() + i * sizeof(float), sizeof(float));
    }
    return sound;
}

TEST(Loss, OfBuffersIsNamedWhereItHappened) {
    test::Player player("lineupaudiosrc ident=ebu-stereo-1000 duration=" + std::to_string(kSeconds * GST_SECOND) +
                        " samplesperbuffer=" + std::to_string(kSamplesOfBuffer) +
                        " ! audio/x-raw,format=F32LE,rate=48000 ! identity name=path");
    Losing losing;
    const test::Element path(gst_bin_get_by_name(GST_BIN(&player.Pipeline()), "path"));
    GstPad* const pad = gst_element_get_static_pad(path.get(), "src");
    gst_pad_add_probe(pad, GST_PAD_PROBE_TYPE_BUFFER, OnBuffer, &losing, nullptr);
    gst_object_unref(pad);
    const test::Played played = player.Play();
    ASSERT_EQ(played.error, "");
    ASSERT_GE(losing.places.size(), 3U);

    const lineup::SoundFindings findings = test::Check(Deinterleaved(played.Bytes(), 2), kSampleRate);
    ASSERT_EQ(findings.faults.size(), losing.places.size()) << testing::PrintToString(test::Ids(findings));
    for (std::size_t i = 0; i < losing.places.size(); ++i) {
        EXPECT_EQ(findings.faults[i].id, "samples-lost");
        EXPECT_NEAR(findings.faults[i].at.value_or(-1), losing.places[i], 0.01);
        EXPECT_NEAR(findings.faults[i].measured.value_or(0), kSamplesOfBuffer, 0.5);
    }
}

}  // namespace
