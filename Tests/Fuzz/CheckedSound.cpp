// What is said of a line-up that went through anything: whatever the samples, the labels and the settings, the answer
// is in order: known ids, inputs that exist, numbers that are numbers, a verdict that goes with the faults.
#include <lineup/AudioReader.h>
#include <lineup/ChannelLayout.h>
#include <lineup/Clip.h>
#include <lineup/Importer.h>
#include <lineup/ToneChoice.h>
#include <lineup/UsageError.h>
#include "Host/Lineup/Check/Sound/CheckSound.h"
#include "Tests/Fuzz/Support/Bytes.h"
#include "Tests/Fuzz/Support/Require.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

using fuzz::Require;
using Sound = std::vector<std::vector<float>>;

constexpr double kSentRate = 8000;
constexpr double kSentSeconds = 14;
constexpr std::size_t kMostMoves = 12;
constexpr std::size_t kMostInputs = 8;
constexpr std::size_t kMostSamples = 160000;
constexpr std::array<const char*, 6> kSent = {"blits", "ebu-5.1", "ebu-stereo-1000", "ebu-stereo-400", "", "nothing"};
constexpr std::array<const char*, 7> kExpected = {
    "auto", "tone", "none", "blits", "ebu-5.1", "ebu-stereo-1000", "ebu-stereo-400"};
constexpr std::array<double, 7> kRates = {8000, 8000, 8000, 7350, 11025, 48000, 384000};

std::shared_ptr<const lineup::Importer> Bundle() {
    static const auto kImporter = std::make_shared<const lineup::Importer>(TEST_BUNDLE);
    return kImporter;
}

// What the plug-in gives, in the order of files.
const Sound& Sent(const std::string& ident) {
    static std::map<std::string, Sound> sounds;
    Sound& sound = sounds[ident];
    const auto count = static_cast<std::size_t>(kSentSeconds * kSentRate);
    if (sound.empty() && ident == "nothing") {
        sound.assign(2, std::vector<float>(count));
    } else if (sound.empty()) {
        lineup::ToneChoice choice{.sampleRateHz = kSentRate};
        if (!ident.empty()) {
            choice.ident = ident;
        }
        const lineup::Clip clip(Bundle(), lineup::MakeSettings(*Bundle(), choice));
        const auto& order = lineup::FindChannelLayout(clip.NumChannels())->fileOrder;
        sound.assign(order.size(), std::vector<float>(count));
        std::vector<float*> targets(order.size());
        for (std::size_t place = 0; place < order.size(); ++place) {
            targets[static_cast<std::size_t>(order[place])] = sound[place].data();
        }
        lineup::AudioReader(clip).Read(0, static_cast<std::int64_t>(count), targets);
    }
    return sound;
}

// One thing that a path does to a sound.
void Move(Sound& sound, fuzz::Bytes& bytes) {
    const std::size_t input = bytes.Below(sound.size());
    const std::size_t other = bytes.Below(sound.size());
    const std::size_t length = sound.front().size();
    const std::size_t first = bytes.Take<std::uint32_t>() % length;
    const std::size_t last = std::min(length, first + bytes.Take<std::uint16_t>());
    const auto span = [&](std::vector<float>& samples) { return std::span(samples).subspan(first, last - first); };
    switch (bytes.Below(9)) {
        case 0:
            std::swap(sound[input], sound[other]);
            break;
        case 1: {
            const float gain = bytes.Float();
            std::ranges::for_each(sound[input], [gain](float& x) { x *= gain; });
            break;
        }
        case 2:
            std::ranges::fill(span(sound[input]), bytes.Float());
            break;
        case 3:
            for (std::vector<float>& samples : sound) {
                samples.erase(samples.begin() + static_cast<std::ptrdiff_t>(first),
                              samples.begin() + static_cast<std::ptrdiff_t>(last));
            }
            break;
        case 4:
            for (std::vector<float>& samples : sound) {
                const std::vector<float> again(samples.begin() + static_cast<std::ptrdiff_t>(first),
                                               samples.begin() + static_cast<std::ptrdiff_t>(last));
                samples.insert(samples.begin() + static_cast<std::ptrdiff_t>(first), again.begin(), again.end());
            }
            break;
        case 5:
            for (std::size_t n = 0; n < length; ++n) {
                sound[input][n] += 0.5F * sound[other][n];
            }
            break;
        case 6: {
            std::uint32_t state = bytes.Take<std::uint32_t>();
            for (float& x : span(sound[input])) {
                state = state * 1664525U + 1013904223U;
                x += static_cast<float>(state >> 8U) * 0x1p-26F;
            }
            break;
        }
        case 7:
            if (sound.size() < kMostInputs) {
                sound.push_back(sound[input]);
            }
            break;
        default:
            if (sound.size() > 1) {
                sound.erase(sound.begin() + static_cast<std::ptrdiff_t>(input));
            }
    }
    for (std::vector<float>& samples : sound) {
        samples.resize(std::clamp(samples.size(), std::size_t{1}, kMostSamples));
    }
}

class MovedSound : public lineup::SoundSource {
public:
    MovedSound(Sound sound, fuzz::Bytes& bytes)
        : mSound(std::move(sound)),
          mRate(bytes.Flag() ? bytes.Pick(kRates) : 1 + bytes.Take<std::uint32_t>() % 400000),
          mAtOnce(1 + bytes.Take<std::uint16_t>()),
          mLossy(bytes.Below(3)),
          mBits(bytes.Below(66)) {}

    [[nodiscard]] double SampleRate() const override { return mRate; }
    [[nodiscard]] int Inputs() const override { return static_cast<int>(mSound.size()); }
    [[nodiscard]] std::optional<int> Bits() const override {
        return mBits == 0 ? std::nullopt : std::optional(static_cast<int>(mBits));
    }
    [[nodiscard]] std::optional<bool> Lossy() const override {
        return mLossy == 0 ? std::nullopt : std::optional(mLossy == 1);
    }

    std::size_t Read(std::span<float* const> inputs, std::size_t most) override {
        const std::size_t count = std::min({most, mAtOnce, mSound.front().size() - mDone});
        for (std::size_t input = 0; input < inputs.size(); ++input) {
            std::copy_n(mSound[input].begin() + static_cast<std::ptrdiff_t>(mDone), count, inputs[input]);
        }
        mDone += count;
        return count;
    }

private:
    Sound mSound;
    double mRate;
    std::size_t mAtOnce;
    std::size_t mLossy;
    std::size_t mBits;
    std::size_t mDone = 0;
};

lineup::CheckSettings SettingsOf(fuzz::Bytes& bytes) {
    lineup::CheckSettings settings;
    settings.expect = bytes.Pick(kExpected);
    if (bytes.Below(4) == 0) {
        settings.levelDb = -static_cast<double>(bytes.Below(64));
    }
    if (bytes.Below(4) == 0) {
        settings.frequencyHz = 1 + bytes.Take<std::uint16_t>();
    }
    if (bytes.Below(4) == 0) {
        settings.channels = bytes.Flag() ? "5.1" : "stereo";
    }
    if (bytes.Below(4) == 0) {
        settings.fromSeconds = static_cast<double>(bytes.Below(16));
        settings.forSeconds = 0.1 + static_cast<double>(bytes.Below(16));
    }
    return settings;
}

void RequireNumber(const std::optional<double>& number) {
    Require(!number || std::isfinite(*number), "a number is one, or left out");
}

void RequireOrder(const lineup::SoundFindings& findings, int inputs) {
    Require(findings.faults.empty() || findings.verdict == lineup::CheckVerdict::Faults, "faults make the verdict");
    Require(!findings.faults.empty() || findings.verdict != lineup::CheckVerdict::Faults, "the verdict has faults");
    for (const lineup::CheckFault& fault : findings.faults) {
        Require(lineup::FindCheckFaultKind(fault.id, lineup::CheckPart::Sound) != nullptr, "a fault's id is known");
        Require(std::ranges::is_sorted(fault.inputs), "inputs are in their order");
        Require(std::ranges::all_of(fault.inputs, [inputs](int input) { return input >= 0 && input < inputs; }),
                "a fault is at inputs that there are");
        Require(!fault.text.empty() && fault.text.find("nan") == std::string::npos, "a fault is said in a sentence");
        RequireNumber(fault.measured);
        RequireNumber(fault.expected);
        RequireNumber(fault.at);
    }
    RequireNumber(findings.sound.startsAt);
    RequireNumber(findings.sound.cycles);
    Require(!findings.sound.speed || std::isfinite(findings.sound.speed->ppm), "a speed is a number");
    for (const lineup::ChannelReport& channel : findings.sound.channels) {
        for (const auto& number : {channel.level, channel.gain, channel.delay, channel.noise, channel.distortion}) {
            RequireNumber(number);
        }
        RequireNumber(channel.dc);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Bytes bytes(data, size);
    Sound sound = Sent(bytes.Pick(kSent));
    const lineup::CheckSettings settings = SettingsOf(bytes);
    for (std::size_t moves = bytes.Below(kMostMoves); moves > 0; --moves) {
        Move(sound, bytes);
    }
    MovedSound source(std::move(sound), bytes);
    try {
        RequireOrder(lineup::CheckSound(source, Bundle(), settings), source.Inputs());
    } catch (const lineup::UsageError&) {  // settings that contradict each other
    }
    return 0;
}
