#include "Host/Lineup/Check/Watch/SoundWindow.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace lineup {

namespace {

constexpr double kChangeSeconds = 0.01;
constexpr double kOfTheMost = 0.1;      // of the power of what differs most
constexpr double kLeastChange = 1e-10;  // mean square: below that samples are rounded otherwise, and nothing else

class StretchOfFeed : public SoundSource {
public:
    StretchOfFeed(const FeedFacts& facts, std::vector<std::span<const float>> inputs)
        : mFacts(facts), mInputs(std::move(inputs)) {}

    [[nodiscard]] double SampleRate() const override { return mFacts.rate; }
    [[nodiscard]] int Inputs() const override { return mFacts.inputs; }
    [[nodiscard]] std::optional<int> Bits() const override { return mFacts.bits; }
    [[nodiscard]] std::optional<bool> Lossy() const override { return mFacts.lossy; }

    std::size_t Read(std::span<float* const> inputs, std::size_t most) override {
        const std::size_t count = std::min(most, mInputs.front().size() - mDone);
        for (std::size_t input = 0; input < inputs.size(); ++input) {
            std::ranges::copy(mInputs[input].subspan(mDone, count), inputs[input]);
        }
        mDone += count;
        return count;
    }

private:
    FeedFacts mFacts;
    std::vector<std::span<const float>> mInputs;
    std::size_t mDone = 0;
};

}  // namespace

SoundWindow::SoundWindow(const FeedFacts& facts, double seconds)
    : mFacts(facts),
      mInputs(static_cast<std::size_t>(facts.inputs),
              sound::SlidingBuffer<float>(static_cast<std::size_t>(seconds * facts.rate))) {}

void SoundWindow::Add(std::span<const std::vector<float>> inputs, std::size_t count) {
    for (std::size_t input = 0; input < mInputs.size(); ++input) {
        mInputs[input].Append(std::span(inputs[input]).first(count));
    }
}

std::unique_ptr<SoundSource> SoundWindow::Stretch(std::int64_t first, std::int64_t end) const {
    std::vector<std::span<const float>> inputs;
    for (const auto& input : mInputs) {
        inputs.push_back(input.Get(first, end));
    }
    return std::make_unique<StretchOfFeed>(mFacts, std::move(inputs));
}

SoundWindow::Block SoundWindow::BlockAt(std::int64_t first, std::int64_t count, std::int64_t period,
                                        std::span<const int> inputs) const {
    Block block{.start = first};
    for (const int input : inputs) {
        const auto& samples = mInputs[static_cast<std::size_t>(input)];
        const auto now = samples.Get(first, first + count);
        const auto before = samples.Get(first - period, first - period + count);
        double changes = 0;
        double squares = 0;
        for (std::size_t i = 0; i < now.size(); ++i) {
            const auto value = static_cast<double>(now[i]);
            const double change = value - static_cast<double>(before[i]);
            changes += change * change;
            squares += value * value;
        }
        block.change = std::max(block.change, changes / static_cast<double>(count));
        block.power = std::max(block.power, squares / static_cast<double>(count));
    }
    return block;
}

// Nothing where all is as it was.
std::vector<SoundWindow::Block> SoundWindow::Compare(const Comparison& comparison) const {
    std::vector<int> all(mInputs.size());
    std::iota(all.begin(), all.end(), 0);
    const auto count = static_cast<std::int64_t>(kChangeSeconds * mFacts.rate);
    const std::int64_t end = std::min(comparison.end, End());
    std::vector<Block> blocks;
    double most = 0;
    for (std::int64_t at = std::max(comparison.first, First() + comparison.period); at + count <= end; at += count) {
        const bool isPassedOver = std::ranges::any_of(comparison.passedOver, [&](const DamagedStretch& stretch) {
            return at + count > stretch.position && at < stretch.position + stretch.count;
        });
        if (!isPassedOver) {
            const auto inputs = comparison.inputs.empty() ? std::span<const int>(all) : comparison.inputs;
            blocks.push_back(BlockAt(at, count, comparison.period, inputs));
            most = std::max(most, blocks.back().change);
        }
    }
    return most < kLeastChange ? std::vector<Block>() : blocks;
}

std::optional<std::int64_t> SoundWindow::FirstChange(const Comparison& comparison) const {
    const std::vector<Block> blocks = Compare(comparison);
    if (blocks.empty()) {
        return std::nullopt;
    }
    const double bound = kOfTheMost * std::ranges::max_element(blocks, {}, &Block::change)->change;
    return std::ranges::find_if(blocks, [bound](const Block& block) { return block.change > bound; })->start;
}

std::optional<std::int64_t> SoundWindow::LastChange(const Comparison& comparison) const {
    const std::vector<Block> blocks = Compare(comparison);
    if (blocks.empty()) {
        return std::nullopt;
    }
    const double bound = kOfTheMost * std::ranges::max_element(blocks, {}, &Block::change)->change;
    const double sounds = kOfTheMost * std::ranges::max_element(blocks, {}, &Block::power)->power;
    const auto last =
        std::find_if(blocks.rbegin(), blocks.rend(), [bound](const Block& block) { return block.change > bound; });
    const auto tells =
        std::find_if(blocks.rbegin(), last, [sounds](const Block& block) { return block.power > sounds; });
    return tells == last ? std::nullopt : std::optional(last.base()->start);
}

}  // namespace lineup
