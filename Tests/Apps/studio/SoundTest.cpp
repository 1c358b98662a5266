#include <lineup/AudioReader.h>
#include "Tests/Apps/studio/SoundServer.h"
#include "Tests/Apps/studio/StudioHands.h"

#include <gmock/gmock.h>

#include <QLabel>
#include <algorithm>
#include <cstring>
#include <span>

namespace {

using test::kStereoMap;
using test::kSurroundMap;
using test::StudioTest;
using test::WaitFor;
using testing::HasSubstr;

// A server takes back and mixes again what it has not played yet when a stream begins; a recorder that listens
// has then heard that stretch already.
constexpr std::int64_t kSettledSamples = 9600;

// `frames` frames of a clip, from the settled ones on, as a device with the speakers of `map` gets them.
std::vector<float> ForDevice(const lineup::Clip& clip, const studio::SpeakerMap& map, std::size_t frames) {
    std::vector<std::vector<float>> planes(static_cast<std::size_t>(clip.NumChannels()), std::vector<float>(frames));
    std::vector<float*> targets;
    std::vector<const float*> sources;
    for (auto& plane : planes) {
        targets.push_back(plane.data());
        sources.push_back(plane.data());
    }
    lineup::AudioReader(clip).Read(kSettledSamples, static_cast<std::int64_t>(frames), targets);
    std::vector<float> interleaved(frames * static_cast<std::size_t>(map.Outputs()));
    map.Mix(sources, frames, interleaved.data());
    return interleaved;
}

// How far `expected` is found in `captured` from its beginning on, in samples, wherever it was started.
std::size_t LongestMatch(std::span<const float> captured, std::span<const float> expected, std::size_t channels) {
    std::size_t longest = 0;
    for (std::size_t at = 0; at < captured.size(); at += channels) {
        const auto rest = captured.subspan(at);
        const auto difference = std::ranges::mismatch(rest, expected);
        const auto length = static_cast<std::size_t>(difference.in2 - expected.begin());
        longest = std::max(longest, length);
    }
    return longest;
}

class Sound : public StudioTest {
protected:
    // Plays the window's clip from its start and looks for `seconds` of it in what the sink plays. A machine
    // that is too busy to feed a device in time leaves gaps: then it is played again.
    void ExpectHeard(const QString& sink, const char* channelMap, const studio::SpeakerMap& map, double seconds) {
        const auto frames = static_cast<std::size_t>(seconds * 48000);
        const auto channels = static_cast<std::size_t>(map.Outputs());
        const std::vector<float> expected = ForDevice(*Window().Document().Clip(), map, frames);
        std::size_t longest = 0;
        for (int attempt = 0; attempt < 5 && longest < expected.size(); ++attempt) {
            test::SinkRecorder recorder(sink, map.Outputs(), channelMap);
            const qsizetype before = recorder.Bytes().size();
            const qsizetype wanted = before + static_cast<qsizetype>((frames + 48000) * channels * sizeof(float));
            Press(Qt::Key_Home);
            Press(Qt::Key_Space);
            WaitFor([&] { return recorder.Bytes().size() > wanted; }, "the sink has played it");
            Press(Qt::Key_Space);
            std::vector<float> captured(static_cast<std::size_t>(recorder.Bytes().size()) / sizeof(float));
            std::memcpy(captured.data(), recorder.Bytes().constData(), captured.size() * sizeof(float));
            longest = std::max(longest, LongestMatch(captured, expected, channels));
        }
        EXPECT_EQ(longest, expected.size());
    }
};

TEST_F(Sound, SurroundIsHeardInTheDevicesOrderToTheBit) {
    test::TheSoundServer().UseNullSink("surround", 6, kSurroundMap);
    lineup::ClipDocument blits = test::DocumentWith("blits");
    blits.lengthFrames = 335;
    Window().Document().New(blits);
    WaitFor([&] { return Find<QLabel>("sound").text() == "Speakers"; }, "the device is found");
    EXPECT_FALSE(Window().Sound().SoundIsChanged());
    ExpectHeard("surround", kSurroundMap, studio::SpeakerMap(6, 6), 5);  // every channel has had its turn by then
}

TEST_F(Sound, SurroundFoldsDownOnAStereoDeviceAndTheWindowSaysSo) {
    Window().Document().New(test::DocumentWith("ebu-5.1"));
    test::TheSoundServer().UseNullSink("stereo", 2, kStereoMap);
    WaitFor([&] { return Find<QLabel>("sound").text().contains("folded down to stereo"); }, "the window says so");
    ExpectHeard("stereo", kStereoMap, studio::SpeakerMap(6, 2), 2);
}

TEST_F(Sound, GoesOnInSilenceWhenTheDeviceGoesAndIsHeardAgainWhenItComesBack) {
    test::TheSoundServer().UseNullSink("first", 2, kStereoMap);
    Window().Document().New(test::DocumentWith("ebu-stereo-1000"));
    WaitFor([&] { return Find<QLabel>("sound").text() == "Speakers"; }, "the device is found");
    Press(Qt::Key_Space);
    const auto movesOn = [&] {
        const std::int64_t before = Window().Sound().Position();
        return [&, before] { return std::abs(Window().Sound().Position() - before) > 72000; };  // 1.5 s
    };
    WaitFor(movesOn(), "it plays");
    test::TheSoundServer().RemoveSink();
    WaitFor([&] { return Find<QLabel>("sound").text().contains("playing in silence"); }, "the window says so");
    WaitFor(movesOn(), "the playhead moves in silence");
    EXPECT_TRUE(Window().Sound().IsPlaying());

    test::TheSoundServer().UseNullSink("second", 2, kStereoMap);
    test::SinkRecorder recorder("second", 2, kStereoMap);
    const auto isHeard = [&] {
        const QByteArray& bytes = recorder.Bytes();
        return std::ranges::any_of(bytes, [](char byte) { return byte != 0; });
    };
    WaitFor(isHeard, "it is heard");
    Press(Qt::Key_Space);
}

TEST_F(Sound, StereoIsHeardToTheBitOnAStereoDevice) {
    test::TheSoundServer().UseNullSink("plain", 2, kStereoMap);
    Window().Document().New(test::DocumentWith("ebu-stereo-1000"));
    ExpectHeard("plain", kStereoMap, studio::SpeakerMap(2, 2), 3);
}

}  // namespace
