#include "Host/Lineup/Check/Picture/FrameSeries.h"

#include "Host/Lineup/Check/Reader/Protocol/MessageReader.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace lineup::picture {

namespace {

constexpr float kAlike = 6;  // codes between means of a block
constexpr std::size_t kMostChanges = 5000;
constexpr double kOften = 0.3;  // of all frames: a clock, a moving logo
constexpr float kBlack = 20;    // codes

using Means = std::array<std::array<float, FrameSeries::kBlocks>, 3>;

// The mean of each block of each plane, 8-bit codes.
Means BlockMeans(const DecodedPicture& picture) {
    Means means{};
    const float scale = std::ldexp(1.0F, 8 - static_cast<int>(picture.head.bits));
    for (std::uint32_t p = 0; p < picture.head.planes; ++p) {
        const std::size_t width = PlaneWidth(picture.head, p);
        const std::size_t height = PlaneHeight(picture.head, p);
        for (std::size_t row = 0; row < FrameSeries::kRows; ++row) {
            for (std::size_t column = 0; column < FrameSeries::kColumns; ++column) {
                const std::size_t left = width * column / FrameSeries::kColumns;
                const std::size_t right = width * (column + 1) / FrameSeries::kColumns;
                const std::size_t top = height * row / FrameSeries::kRows;
                const std::size_t bottom = height * (row + 1) / FrameSeries::kRows;
                std::uint64_t sum = 0;
                for (std::size_t y = top; y < bottom; ++y) {
                    const std::uint16_t* const line = picture.planes.at(p).data() + y * width;
                    sum += std::accumulate(line + left, line + right, std::uint32_t{0});  // of 256 codes at most
                }
                const std::size_t count = (right - left) * (bottom - top);
                means.at(p).at(row * FrameSeries::kColumns + column) =
                    count > 0 ? static_cast<float>(sum) / static_cast<float>(count) * scale : 0;
            }
        }
    }
    return means;
}

}  // namespace

void FrameSeries::SetReference(const DecodedPicture& picture) {
    mReference = BlockMeans(picture);
    mHead = picture.head;
    mLastAlike = picture.head.seconds;
    mFrames = 1;
}

std::optional<FrameSeries::Change> FrameSeries::Differs(const DecodedPicture& picture) const {
    if (!mReference || picture.head.planes == 0) {
        return std::nullopt;
    }
    Change change;
    change.seconds = picture.head.seconds;
    change.isDamaged = (picture.head.flags & decoding::kDamagedFrame) != 0;
    change.isSmall =
        picture.head.width != mHead.width || picture.head.height != mHead.height || picture.head.planes != mHead.planes;
    const Means means = BlockMeans(picture);
    for (std::size_t block = 0; block < kBlocks; ++block) {
        for (std::size_t p = 0; p < picture.head.planes; ++p) {
            if (std::abs(means.at(p).at(block) - mReference->at(p).at(block)) > kAlike) {
                change.blocks.set(block);
            }
        }
    }
    change.isBlack = std::ranges::all_of(means[0], [](float mean) { return mean < kBlack; });
    const bool isAlike = change.blocks.none() && !change.isDamaged && !change.isSmall;
    return isAlike ? std::nullopt : std::optional(change);
}

void FrameSeries::Add(const DecodedPicture& picture) {
    if (!mReference || picture.head.planes == 0) {
        return;
    }
    ++mFrames;
    const auto change = Differs(picture);
    if (!change) {
        mLastAlike = std::max(mLastAlike, picture.head.seconds);
    } else if (mChanges.size() < kMostChanges) {
        mChanges.push_back(*change);
    }
}

std::vector<FrameSeries::Change> FrameSeries::Changes() const {
    std::array<int, kBlocks> often{};
    for (const Change& change : mChanges) {
        for (std::size_t block = 0; block < kBlocks; ++block) {
            often.at(block) += change.blocks.test(block) && change.blocks.count() * 2 < kBlocks ? 1 : 0;
        }
    }
    std::bitset<kBlocks> restless;
    for (std::size_t block = 0; block < kBlocks; ++block) {
        restless.set(block, often.at(block) >= kOften * mFrames);
    }
    double last = mLastAlike;
    std::vector<Change> real;
    for (const Change& change : mChanges) {
        const bool isAlike = (change.blocks & ~restless).none();
        if (isAlike && !change.isDamaged && !change.isSmall) {
            last = std::max(last, change.seconds);
        } else {
            real.push_back(change);
        }
    }
    std::erase_if(real, [last](const Change& change) { return change.seconds > last; });
    std::ranges::sort(real, {}, &Change::seconds);
    return real;
}

}  // namespace lineup::picture
