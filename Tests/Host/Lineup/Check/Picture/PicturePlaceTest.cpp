// Where a card lies, how fine its edges and its colour are, and whose it is.
#include "Tests/Host/Lineup/Check/Picture/CardFrames.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

namespace {

using lineup::Card;
using lineup::DecodedPicture;
using test::Examine;
using test::Frame;
using test::IdsOf;
using test::PictureFindings;
using test::Window;
using testing::ElementsAre;
using testing::IsEmpty;

struct Cut {
    Card card;
    int width;  // of the card
    int height;
    int left;  // columns and lines that are gone
    int top;
    int right;
    int bottom;
    const char* fault;
    double by;  // pixels
};

// Its edges lie on whole pixels of its own size, and not where a card as large as the frame has them.
TEST(PicturePlace, TellsByHowMuchACardWasCutThatWasDrawnForAnotherSize) {
    const std::vector<Cut> cuts = {
        {Card::SD, 720, 480, 24, 24, 24, 24, "cropped", 24}, {Card::SD, 720, 480, 0, 8, 0, 8, "cropped", 8},
        {Card::SD, 720, 576, 0, 8, 0, 8, "cropped", 8},      {Card::SD, 720, 576, 16, 0, 16, 0, "cropped", 16},
        {Card::HD, 640, 360, 0, 8, 0, 8, "cropped", 8},      {Card::HD, 650, 366, 6, 2, 4, 4, "cropped", 6},
        {Card::SD, 720, 480, -4, 0, 4, 0, "shifted", 4},
    };
    for (const Cut& cut : cuts) {
        const DecodedPicture card = Frame({}, cut.card, cut.width, cut.height);
        const PictureFindings findings = Examine(
            {Window(card, cut.left, cut.top, cut.width - cut.left - cut.right, cut.height - cut.top - cut.bottom)});
        ASSERT_THAT(IdsOf(findings), ElementsAre(cut.fault)) << cut.width << "x" << cut.height;
        EXPECT_NEAR(*findings.faults.front().measured, cut.by, 0.05) << cut.width << "x" << cut.height;
    }
}

// As a coarse codec does: of a block of luma whose codes lie close together, a slope is left.
void SmearLowSteps(DecodedPicture& picture, int block) {
    constexpr int kClose = 60 << (test::kBits - 8);
    auto& luma = picture.planes[0];
    for (auto from = luma.begin(); luma.end() - from >= block; from += block) {
        const auto [least, most] = std::minmax_element(from, from + block);
        if (*most - *least < kClose) {
            const int first = from[0];
            const int last = from[block - 1];
            for (int i = 0; i < block; ++i) {
                from[i] = static_cast<std::uint16_t>(first + (last - first) * i / (block - 1));
            }
        }
    }
}

TEST(PicturePlace, StepsThatACoarseCodecMovesCountForLess) {
    const DecodedPicture shifted = Window(Frame({}, Card::SD, 720, 480), -4, 0, 720, 480);
    for (const int block : {10, 16}) {
        DecodedPicture frame = shifted;
        SmearLowSteps(frame, block);
        const PictureFindings findings = Examine({frame});
        ASSERT_THAT(IdsOf(findings), ElementsAre("shifted")) << block;
        EXPECT_NEAR(*findings.faults.front().measured, 4, 0.5) << block;
    }
}

// Colour as it is behind another format: weighted means, `step` columns apart, and straight lines between those.
void MakeColourCoarse(DecodedPicture& picture, int step) {
    const int width = static_cast<int>(picture.head.width);
    for (std::size_t plane = 1; plane < 3; ++plane) {
        auto& codes = picture.planes.at(plane);
        for (std::size_t line = 0; line < codes.size(); line += picture.head.width) {
            const std::vector<std::uint16_t> from(codes.begin() + static_cast<std::ptrdiff_t>(line),
                                                  codes.begin() + static_cast<std::ptrdiff_t>(line) + width);
            const auto mean = [&](int sample) {
                double sum = 0;
                for (int i = 1 - step; i < step; ++i) {
                    const auto at = static_cast<std::size_t>(std::clamp(sample * step + i, 0, width - 1));
                    sum += from.at(at) * (step - std::abs(i));
                }
                return sum / (step * step);
            };
            for (int x = 0; x < width; ++x) {
                const double share = static_cast<double>(x % step) / step;
                codes.at(line + static_cast<std::size_t>(x)) =
                    static_cast<std::uint16_t>(std::lround(mean(x / step) * (1 - share) + mean(x / step + 1) * share));
            }
        }
    }
}

TEST(PicturePlace, ColourMayHaveBeenHalvedOnItsWayButNotQuartered) {
    DecodedPicture halved = Frame({}, Card::SD, 720, 480);
    DecodedPicture quartered = halved;
    MakeColourCoarse(halved, 2);
    MakeColourCoarse(halved, 2);
    MakeColourCoarse(quartered, 4);
    EXPECT_THAT(IdsOf(Examine({halved})), IsEmpty());
    EXPECT_THAT(IdsOf(Examine({quartered})), ElementsAre("chroma-subsampled"));
}

// Its ramp has 8 bits, scaled to 10 so that none of them stands still; -I and +Q are right.
TEST(PicturePlace, BarsWithABlackThatIsDarkerThanBlackComeFromAnotherGenerator) {
    DecodedPicture frame = Frame([](test::Codes& c) { c[0] = 16 + std::round((c[0] - 16) * 80 / 219) * 219 / 80; });
    ASSERT_THAT(IdsOf(Examine({frame})), ElementsAre("bits-truncated"));
    const auto patches = Examine({frame}).picture->patches;
    const auto black = std::ranges::find(patches, "black 4", &lineup::PatchReport::name);
    ASSERT_NE(black, patches.end());
    const auto pixel = [](double fraction, int side) { return static_cast<int>(std::lround(fraction * side)); };
    const int left = pixel(black->left, test::kWidth);
    for (int y = pixel(black->top, test::kHeight); y < pixel(black->bottom, test::kHeight); ++y) {
        const auto from = frame.planes[0].begin() + y * test::kWidth + left;
        std::fill(from, from + pixel(black->right, test::kWidth) - left, test::Stored(10));
    }
    const PictureFindings findings = Examine({frame});
    EXPECT_THAT(IdsOf(findings), IsEmpty());
    EXPECT_TRUE(std::ranges::any_of(findings.notes, [](const auto& note) { return note.id == "other-bars"; }));
}

}  // namespace
