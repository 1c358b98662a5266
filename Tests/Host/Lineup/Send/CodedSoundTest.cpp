#include "Host/Lineup/Send/Sound/CodedSound.h"
#include "Tests/Host/Lineup/Export/MediaFile.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace {

constexpr int kBlockLength = 1000;

// Frames of no particular length that say what was coded: the first sample.
class NotingCoder final : public lineup::SoundCoder {
public:
    explicit NotingCoder(int& blocks) : mBlocks(&blocks) {}

    [[nodiscard]] int BlockSamples() const override { return kBlockLength; }
    [[nodiscard]] int PaddingSamples() const override { return 0; }
    void Code(std::span<float* const> samples, std::vector<std::uint8_t>& packet) override {
        const auto* const bytes = reinterpret_cast<const std::uint8_t*>(samples[0]);
        packet.assign(bytes, bytes + sizeof(float) + static_cast<std::size_t>((*mBlocks)++ % 7));
    }

private:
    int* mBlocks;
};

// Ten of the stereo ident are a cycle: 30 s.
TEST(CodedSound, CodesACycleOnceWhereItFitsAndTheSameSamplesWhereItDoesNot) {
    constexpr int kFramesOfCycle = 1440;
    constexpr lineup::CodedSound::Stretches kStretches{.frames = 160, .warmUp = 2};
    const lineup::Clip clip = test::OpenClip(2);
    for (const std::size_t usualBytes : {std::size_t{8}, std::size_t{4}, std::size_t{4} << 20U}) {
        int blocks = 0;
        lineup::CodedSound sound(
            clip, [&blocks] { return std::make_unique<NotingCoder>(blocks); }, usualBytes, kStretches);
        EXPECT_EQ(sound.Keeps(), usualBytes < 1000);
        std::vector<std::vector<std::uint8_t>> cycle;
        for (int frame = 0; frame < 3 * kFramesOfCycle; ++frame) {
            const auto bytes = sound.Frame(frame);
            std::vector<std::uint8_t> samples(bytes.begin(), bytes.begin() + sizeof(float));
            if (frame < kFramesOfCycle) {
                cycle.push_back(std::move(samples));
            } else {
                EXPECT_EQ(samples, cycle[static_cast<std::size_t>(frame % kFramesOfCycle)]) << frame;
            }
        }
        if (usualBytes == 8) {
            EXPECT_EQ(blocks, kFramesOfCycle + kFramesOfCycle / 160 * 2);
        } else {
            EXPECT_GT(blocks, kFramesOfCycle * 3 / 2);
        }
    }
}

}  // namespace
