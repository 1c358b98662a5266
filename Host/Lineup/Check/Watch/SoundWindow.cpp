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

// Mean square of what differs, of the input that differs most.
double SoundWindow::ChangeAt(std::int64_t first, std::int64_t count, std::int64_t period,
                             std::span<const int> inputs) const {
    double most = 0;
    for (const int input : inputs) {
        const auto& samples = mInputs[static_cast<std::size_t>(input)];
        const auto now = samples.Get(first, first + count);
        const auto before = samples.Get(first - period, first - period + count);
        double sum = 0;
        for (std::size_t i = 0; i < now.size(); ++i) {
            const double change = static_cast<double>(now[i]) - static_cast<double>(before[i]);
            sum += change * change;
        }
        most = std::max(most, sum / static_cast<double>(count));
    }
    return most;
}

std::optional<std::int64_t> SoundWindow::FirstChange(std::int64_t first, std::int64_t end, std::int64_t period,
                                                     std::span<const int> inputs) const {
    std::vector<int> all(mInputs.size());
    std::iota(all.begin(), all.end(), 0);
    const auto block = static_cast<std::int64_t>(kChangeSeconds * mFacts.rate);
    std::vector<double> changes;
    first = std::max(first, First() + period);
    for (std::int64_t at = first; at + block <= std::min(end, End()); at += block) {
        changes.push_back(ChangeAt(at, block, period, inputs.empty() ? all : inputs));
    }
    if (changes.empty() || *std::ranges::max_element(changes) < kLeastChange) {
        return std::nullopt;
    }
    const double bound = kOfTheMost * *std::ranges::max_element(changes);
    const auto found = std::ranges::find_if(changes, [bound](double change) { return change > bound; });
    return first + (found - changes.begin()) * block;
}

}  // namespace lineup
