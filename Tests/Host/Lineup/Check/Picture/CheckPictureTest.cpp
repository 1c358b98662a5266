// Frames of the card whose codes were changed, one way each, and what is said of them.
#include "Tests/Host/Lineup/Check/Picture/CardFrames.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <string>
#include <vector>

namespace {

using lineup::DecodedPicture;
using test::Codes;
using test::Examine;
using test::Frame;
using test::IdsOf;
using test::kHeight;
using test::kWidth;
using test::PictureFindings;
using testing::ElementsAre;
using testing::IsEmpty;

// To R'G'B' of 8 bits by the coefficients of BT.709, and back by those of BT.601.
void TakenForBt709AndCutOff(Codes& c) {
    const double y = (c[0] - 16) / 219;
    const double cb = (c[1] - 128) / 224;
    const double cr = (c[2] - 128) / 224;
    const double red = std::clamp(y + 1.5748 * cr, 0.0, 1.0);
    const double blue = std::clamp(y + 1.8556 * cb, 0.0, 1.0);
    const double green = std::clamp(y - 0.1873 * cb - 0.4681 * cr, 0.0, 1.0);
    const double luma = 0.299 * red + 0.587 * green + 0.114 * blue;
    c = {16 + 219 * luma, 128 + 224 * (blue - luma) / 1.772, 128 + 224 * (red - luma) / 1.402};
}

struct Damage {
    const char* id;
    std::function<void(Codes&)> change;
};

TEST(CheckPicture, NamesWhatWasDoneToTheCodesAndNothingElse) {
    const std::vector<Damage> damages = {
        {"range-wrong",
         [](Codes& c) {
             c = {(c[0] - 16) * 255 / 219, 128 + (c[1] - 128) * 255 / 224, 128 + (c[2] - 128) * 255 / 224};
         }},
        {"gain-wrong", [](Codes& c) { c[0] = 16 + (c[0] - 16) * 0.9; }},
        {"lift-wrong", [](Codes& c) { c[0] = 16 + 219 * 0.075 + (c[0] - 16) * 0.925; }},
        {"saturation-wrong",
         [](Codes& c) {
             c = {c[0], 128 + (c[1] - 128) * 0.9, 128 + (c[2] - 128) * 0.9};
         }},
        {"chroma-swapped", [](Codes& c) { std::swap(c[1], c[2]); }},
        {"chroma-missing", [](Codes& c) { c[1] = c[2] = 128; }},
        {"blacks-crushed", [](Codes& c) { c[0] = std::max(c[0], 16.0); }},
        {"whites-clipped", [](Codes& c) { c[0] = std::min(c[0], 200.0); }},
        {"matrix-wrong", TakenForBt709AndCutOff},
        {"matrix-wrong",  // a coefficient of green is wrong in the third digit
         [](Codes& c) { c[0] += 0.005 * (c[0] - 16 - 0.3441 * (c[1] - 128) - 0.7141 * (c[2] - 128)); }},
        {"bits-truncated",
         [](Codes& c) {
             c = {std::floor(c[0]), std::floor(c[1]), std::floor(c[2])};
         }},
        {"bits-truncated",  // 64 bands, no bit of which stands still
         [](Codes& c) { c[0] = 16 + std::round((c[0] - 16) * 63 / 219) * 219 / 63; }},
    };
    for (const Damage& damage : damages) {
        EXPECT_THAT(IdsOf(Examine({Frame(damage.change)})), ElementsAre(damage.id));
    }
}

// By way of 8 bits, in which a converter left white two codes too dark.
void ConvertedByRoundingDown(Codes& c) {
    TakenForBt709AndCutOff(c);
    c = {std::floor(16 + (c[0] - 16) * 0.9955), std::floor(c[1]), std::floor(c[2])};
}

TEST(CheckPicture, NamesACauseAndNotWhatAConverterRounds) {
    EXPECT_THAT(IdsOf(Examine({Frame(ConvertedByRoundingDown)})), ElementsAre("matrix-wrong", "bits-truncated"));
    EXPECT_THAT(IdsOf(Examine({Frame([](Codes& c) {
                    TakenForBt709AndCutOff(c);
                    c[0] = 16 + (c[0] - 16) * 0.95;
                })})),
                ElementsAre("matrix-wrong", "gain-wrong"));
}

TEST(CheckPicture, SeesTheOneWhiteOfTheSdCardCutOff) {
    const auto clipped = [](Codes& c) { c[0] = std::min(c[0], 210.0); };
    const PictureFindings findings = Examine({Frame(clipped, lineup::Card::SD)});
    ASSERT_THAT(IdsOf(findings), ElementsAre("whites-clipped"));
    EXPECT_NEAR(*findings.faults.front().measured, 210, 0.5);
}

TEST(CheckPicture, FindsNothingWrongWithTheCardItself) {
    const PictureFindings findings = Examine({Frame(), Frame()});
    EXPECT_TRUE(findings.isCardFound);
    EXPECT_THAT(IdsOf(findings), IsEmpty());
    ASSERT_TRUE(findings.picture->place);
    EXPECT_NEAR(findings.picture->place->width, kWidth, 0.25);
    for (const lineup::PatchReport& patch : findings.picture->patches) {
        for (std::size_t i = 0; i < 3; ++i) {
            EXPECT_NEAR(patch.measured.at(i), patch.expected.at(i), 0.2) << patch.name;
        }
    }
}

TEST(CheckPicture, AnotherGeneratorMayRoundAnEdgeToTheNextLine) {
    DecodedPicture frame = Frame();
    std::size_t line = 1;  // the first one below the upper bars
    while (frame.planes[0].at(line * kWidth) == frame.planes[0].front()) {
        ++line;
    }
    for (auto& plane : frame.planes) {
        std::copy_n(plane.begin(), kWidth, plane.begin() + static_cast<std::ptrdiff_t>(line * kWidth));
    }
    const PictureFindings findings = Examine({frame});
    EXPECT_THAT(IdsOf(findings), IsEmpty());
    EXPECT_NEAR(findings.picture->place->height, kHeight, 0.25);
}

TEST(CheckPicture, FindsNoCardInWhite) {
    const PictureFindings findings = Examine({Frame([](Codes& c) { c = {235, 128, 128}; })});
    EXPECT_FALSE(findings.isCardFound);
    EXPECT_THAT(IdsOf(findings), IsEmpty());
}

TEST(CheckPicture, ACardThatIsAskedForMustBeThere) {
    EXPECT_THAT(IdsOf(Examine({Frame()}, "sd")), ElementsAre("card-other"));
    EXPECT_THAT(IdsOf(Examine({Frame([](Codes& c) { c = {16, 128, 128}; })}, "hd")), ElementsAre("card-missing"));
}

TEST(CheckPicture, FramesThatDifferAreCountedUpToTheLastOfTheCard) {
    const DecodedPicture card = Frame();
    const DecodedPicture black = Frame([](Codes& c) { c = {16, 128, 128}; });
    EXPECT_THAT(IdsOf(Examine({card, card, black, black})), IsEmpty());
    const PictureFindings findings = Examine({card, black, black, card, black});
    ASSERT_THAT(IdsOf(findings), ElementsAre("picture-changes"));
    EXPECT_EQ(findings.faults.front().measured, 2);
    EXPECT_NEAR(*findings.faults.front().at, 0.04, 1e-9);
}

TEST(CheckPicture, TagsThatNameAnotherMatrixAreWrongAndNotTheNumbers) {
    DecodedPicture frame = Frame();
    frame.head.matrix = {'b', 't', '7', '0', '9'};
    EXPECT_THAT(IdsOf(Examine({frame})), ElementsAre("tags-wrong"));
    frame.head.matrix = {'s', 'm', 'p', 't', 'e', '1', '7', '0', 'm'};
    EXPECT_THAT(IdsOf(Examine({frame})), IsEmpty());
}

}  // namespace
