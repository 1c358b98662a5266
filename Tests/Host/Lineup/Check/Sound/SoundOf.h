#pragma once

#include <lineup/AudioReader.h>
#include <lineup/ChannelLayout.h>
#include <lineup/Clip.h>
#include <lineup/Importer.h>
#include <lineup/ToneChoice.h>
#include "Host/Lineup/Check/Sound/CheckSound.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>
#include <numbers>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace test {

using Sound = std::vector<std::vector<float>>;
using Strings = std::vector<std::string>;

inline constexpr double kRate = 12000;  // Hz, unless a test says otherwise

inline std::shared_ptr<const lineup::Importer> Bundle() {
    static const auto kImporter = std::make_shared<const lineup::Importer>(TEST_BUNDLE);
    return kImporter;
}

/// What the plug-in gives for the ident, in the order of files.
inline Sound Ident(const std::string& name, double seconds, double firstSecond = 0, double rate = kRate) {
    const lineup::Clip clip(Bundle(), lineup::MakeSettings(*Bundle(), {.sampleRateHz = rate, .ident = name}));
    const auto count = static_cast<std::size_t>(seconds * rate);
    const auto& order = lineup::FindChannelLayout(clip.NumChannels())->fileOrder;
    Sound sound(order.size(), std::vector<float>(count));
    std::vector<float*> targets(order.size());
    for (std::size_t place = 0; place < order.size(); ++place) {
        targets[static_cast<std::size_t>(order[place])] = sound[place].data();
    }
    lineup::AudioReader(clip).Read(std::llround(firstSecond * rate), static_cast<std::int64_t>(count), targets);
    return sound;
}

/// The number of the sample at that time, at `kRate`.
inline std::ptrdiff_t SampleAt(double seconds) {
    return std::llround(seconds * kRate);
}

/// `count` samples of all channels go, from `at` seconds on.
inline void Lose(Sound& sound, double at, std::ptrdiff_t count) {
    for (auto& channel : sound) {
        channel.erase(channel.begin() + SampleAt(at), channel.begin() + SampleAt(at) + count);
    }
}

/// The last `count` samples before `at` seconds come once more in all channels.
inline void Repeat(Sound& sound, double at, std::ptrdiff_t count) {
    for (auto& channel : sound) {
        const std::vector<float> again(channel.begin() + SampleAt(at) - count, channel.begin() + SampleAt(at));
        channel.insert(channel.begin() + SampleAt(at), again.begin(), again.end());
    }
}

/// A sine in each of `channels`, by itself: no one of ours makes it.
inline Sound Tone(double frequency, double amplitude, double seconds, std::size_t channels = 2, double rate = kRate) {
    Sound sound(channels, std::vector<float>(static_cast<std::size_t>(seconds * rate)));
    for (auto& channel : sound) {
        for (std::size_t n = 0; n < channel.size(); ++n) {
            const double turns = frequency * static_cast<double>(n) / rate;
            channel[n] = static_cast<float>(amplitude * std::sin(2 * std::numbers::pi * (turns - std::floor(turns))));
        }
    }
    return sound;
}

/// Sound in memory, as a recording that is not lossy.
class MemorySource : public lineup::SoundSource {
public:
    explicit MemorySource(Sound sound, double rate = kRate, std::optional<int> bits = std::nullopt)
        : mSound(std::move(sound)), mRate(rate), mBits(bits) {}

    [[nodiscard]] double SampleRate() const override { return mRate; }
    [[nodiscard]] int Inputs() const override { return static_cast<int>(mSound.size()); }
    [[nodiscard]] std::optional<int> Bits() const override { return mBits; }
    [[nodiscard]] std::optional<bool> Lossy() const override { return false; }

    std::size_t Read(std::span<float* const> inputs, std::size_t most) override {
        const std::size_t count = std::min(most, mSound.front().size() - mDone);
        for (std::size_t input = 0; input < inputs.size(); ++input) {
            std::copy_n(mSound[input].begin() + static_cast<std::ptrdiff_t>(mDone), count, inputs[input]);
        }
        mDone += count;
        return count;
    }

private:
    Sound mSound;
    double mRate;
    std::optional<int> mBits;
    std::size_t mDone = 0;
};

/// The same, as a codec gives it that leaves out what is not heard.
class CodedSource : public MemorySource {
public:
    using MemorySource::MemorySource;
    [[nodiscard]] std::optional<bool> Lossy() const override { return true; }
};

inline lineup::SoundFindings Check(Sound sound, double rate = kRate, const lineup::CheckSettings& settings = {}) {
    MemorySource source(std::move(sound), rate);
    return lineup::CheckSound(source, Bundle(), settings);
}

inline Strings Ids(const lineup::SoundFindings& findings) {
    Strings ids;
    for (const lineup::CheckFault& fault : findings.faults) {
        ids.push_back(fault.id);
    }
    return ids;
}

inline Strings Texts(const lineup::SoundFindings& findings) {
    Strings texts;
    for (const lineup::CheckFault& fault : findings.faults) {
        texts.push_back(fault.text);
    }
    return texts;
}

}  // namespace test
