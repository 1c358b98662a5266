#include "Apps/studio/Check/RecordingFeed.h"

#include <lineup/ChannelLayout.h>
#include "Host/Lineup/Check/Reader/RecordingReader.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <utility>

namespace studio {

namespace {

constexpr auto kLookAgain = std::chrono::milliseconds(5);

}  // namespace

RecordingFeed::RecordingFeed(std::string file, int inputs, double rateHz, std::int64_t length)
    : mFile(std::move(file)), mInputs(inputs), mRateHz(rateHz), mLength(length) {
    for (Block& block : mBlocks) {
        block.inputs.assign(static_cast<std::size_t>(inputs), std::vector<float>(kBlockFrames));
    }
    mThread = std::jthread([this](const std::stop_token& stop) { Run(stop); });
}

std::size_t RecordingFeed::ChannelOf(std::size_t input, int inputs) {
    const lineup::ChannelLayout* const layout = lineup::FindChannelLayout(inputs);
    return layout == nullptr ? input : static_cast<std::size_t>(layout->fileOrder[input]);
}

std::size_t RecordingFeed::Read(std::int64_t position, std::size_t frames, std::span<float* const> targets) {
    if (position != mNext) {
        mNext = position;
        mFrom.store(position);
        mWish.fetch_add(1, std::memory_order_release);
    }
    const std::uint64_t wish = mWish.load(std::memory_order_relaxed);
    std::size_t done = 0;
    std::uint64_t taken = mTaken.load(std::memory_order_relaxed);
    while (done < frames && taken < mFilled.load(std::memory_order_acquire)) {
        const Block& block = mBlocks[taken % kBlocks];
        const bool isOld = block.answers != wish;
        const std::size_t count = isOld ? 0 : std::min(frames - done, block.frames - mTakenOfBlock);
        for (std::size_t input = 0; input < block.inputs.size(); ++input) {
            const auto from = block.inputs[input].begin() + static_cast<std::ptrdiff_t>(mTakenOfBlock);
            std::copy_n(from, count, targets[ChannelOf(input, mInputs)] + done);
        }
        done += count;
        mTakenOfBlock += count;
        if (isOld || mTakenOfBlock == block.frames) {
            mTakenOfBlock = 0;
            mTaken.store(++taken, std::memory_order_release);
        }
    }
    mNext += static_cast<std::int64_t>(done);
    return done;
}

void RecordingFeed::Run(const std::stop_token& stop) {
    while (!stop.stop_requested()) {
        const std::uint64_t wish = mWish.load(std::memory_order_acquire);
        if (wish != 0) {
            Decode(mFrom.load(), wish, stop);
        }
        while (IsWanted(wish, stop)) {
            std::this_thread::sleep_for(kLookAgain);
        }
    }
}

// Null when it is no longer wanted.
RecordingFeed::Block* RecordingFeed::NextFree(std::uint64_t wish, const std::stop_token& stop) {
    const std::uint64_t filled = mFilled.load(std::memory_order_relaxed);
    while (IsWanted(wish, stop)) {
        if (filled - mTaken.load(std::memory_order_acquire) < kBlocks) {
            return &mBlocks[filled % kBlocks];
        }
        std::this_thread::sleep_for(kLookAgain);
    }
    return nullptr;
}

void RecordingFeed::Decode(std::int64_t from, std::uint64_t wish, const std::stop_token& stop) {
    std::unique_ptr<lineup::RecordingReader> reader;
    const auto isWanted = [&] { return IsWanted(wish, stop); };
    const auto read = [&](Block& block) -> std::size_t {
        std::vector<float*> pointers;
        pointers.reserve(block.inputs.size());
        for (std::vector<float>& input : block.inputs) {
            pointers.push_back(input.data());
        }
        try {
            if (reader == nullptr) {
                lineup::DecoderSettings settings;
                settings.from = static_cast<double>(from) / mRateHz;
                reader = lineup::RecordingReader::Open(mFile, settings, isWanted);
            }
            return reader->Inputs() == mInputs ? reader->Read(pointers, kBlockFrames) : 0;
        } catch (const std::exception&) {
            return 0;  // the check says what is wrong with it
        }
    };
    bool isOver = false;
    for (std::int64_t position = from; position < mLength;) {
        Block* const block = NextFree(wish, stop);
        if (block == nullptr) {
            return;
        }
        const std::size_t count = isOver ? 0 : read(*block);
        isOver = count == 0;
        if (isOver) {
            for (std::vector<float>& input : block->inputs) {
                std::ranges::fill(input, 0.0F);
            }
        }
        block->answers = wish;
        block->frames = isOver ? kBlockFrames : count;
        position += static_cast<std::int64_t>(block->frames);
        mFilled.fetch_add(1, std::memory_order_release);
    }
}

}  // namespace studio
