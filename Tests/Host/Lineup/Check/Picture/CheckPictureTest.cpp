// Frames of the card whose codes were changed, one way each, and what is said of them.
#include "Tests/Host/Lineup/Check/Picture/CardFrames.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <numbers>
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

Codes CodesOf(double y, double u, double v) {
    return {16 + 219 * y, 128 + 224 * u, 128 + 224 * v};
}

// To R'G'B' of 8 bits by the coefficients of BT.709, and back by those of BT.601.
void TakenForBt709AndCutOff(Codes& c) {
    const double y = (c[0] - 16) / 219;
    const double cb = (c[1] - 128) / 224;
    const double cr = (c[2] - 128) / 224;
    const double red = std::clamp(y + 1.5748 * cr, 0.0, 1.0);
    const double blue = std::clamp(y + 1.8556 * cb, 0.0, 1.0);
    const double green = std::clamp(y - 0.1873 * cb - 0.4681 * cr, 0.0, 1.0);
    const double luma = 0.299 * red + 0.587 * green + 0.114 * blue;
    c = CodesOf(luma, (blue - luma) / 1.772, (red - luma) / 1.402);
}

std::array<double, 3> Rgb(const Codes& c) {
    const double y = (c[0] - 16) / 219;
    const double cb = (c[1] - 128) / 224;
    const double cr = (c[2] - 128) / 224;
    return {y + 1.402 * cr, y - 0.344136 * cb - 0.714136 * cr, y + 1.772 * cb};
}

Codes Luma601(const std::array<double, 3>& rgb) {
    const double luma = 0.299 * rgb[0] + 0.587 * rgb[1] + 0.114 * rgb[2];
    return CodesOf(luma, (rgb[2] - luma) / 1.772, (rgb[0] - luma) / 1.402);
}

void OnRgb(Codes& c, const std::function<double(double)>& curve) {
    auto rgb = Rgb(c);
    std::ranges::transform(rgb, rgb.begin(), curve);
    c = Luma601(rgb);
}

void ConvertedToBt709(Codes& c) {
    const auto rgb = Rgb(c);
    const double luma = 0.2126 * rgb[0] + 0.7152 * rgb[1] + 0.0722 * rgb[2];
    c = CodesOf(luma, (rgb[2] - luma) / 1.8556, (rgb[0] - luma) / 1.5748);
}

void Stretch(Codes& c) {
    c = {(c[0] - 16) * 255 / 219, 128 + (c[1] - 128) * 255 / 224, 128 + (c[2] - 128) * 255 / 224};
}

void Squeeze(Codes& c) {
    c = {16 + c[0] * 219 / 255, 128 + (c[1] - 128) * 224 / 255, 128 + (c[2] - 128) * 224 / 255};
}

double Power(double value, double exponent) {
    return std::copysign(std::pow(std::abs(value), exponent), value);
}

// IEC 61966-2-1
double EncodedOnceMore(double x) {
    return x <= 0.0031308 ? 12.92 * x : 1.055 * std::pow(x, 1 / 2.4) - 0.055;
}
double Decoded(double x) {
    return x <= 0.04045 ? x / 12.92 : std::pow((x + 0.055) / 1.055, 2.4);
}

struct Damage {
    const char* id;
    double measured;  // 0 where nothing is
    const char* text;
    std::function<void(Codes&)> change;
};

void Turn(Codes& c, double degrees) {
    const double angle = degrees * std::numbers::pi / 180;
    const double u = c[1] - 128;
    const double v = c[2] - 128;
    c = {c[0], 128 + std::cos(angle) * u - std::sin(angle) * v, 128 + std::sin(angle) * u + std::cos(angle) * v};
}

TEST(CheckPicture, NamesWhatWasDoneToTheCodesAndNothingElse) {
    const std::vector<Damage> damages = {
        {"range-wrong", 0, "Limited range was stretched to full range.", Stretch},
        {"range-wrong", 0, "stretched to full range twice",
         [](Codes& c) {
             Stretch(c);
             Stretch(c);
         }},
        {"range-wrong", 0, "squeezed to a limited one once too often", Squeeze},
        {"range-wrong", 0, "squeezed to a limited one twice too often",
         [](Codes& c) {
             Squeeze(c);
             Squeeze(c);
         }},
        {"gain-wrong", 90, "White lies at 90.0 %.", [](Codes& c) { c[0] = 16 + (c[0] - 16) * 0.9; }},
        {"gain-wrong", 89.27, "", [](Codes& c) { c[0] *= 0.9; }},
        {"gain-wrong", 95.11, "", [](Codes& c) { c[0] = 128 + (c[0] - 128) * 0.9; }},
        {"gain-wrong", 90, "", [](Codes& c) { OnRgb(c, [](double x) { return 0.9 * x; }); }},
        {"lift-wrong", 7.5, "7.5 %: NTSC's setup of 7.5 %",
         [](Codes& c) { c[0] = 16 + 219 * 0.075 + (c[0] - 16) * 0.925; }},
        {"lift-wrong", 5.48, "Black lies at 5.5 %.", [](Codes& c) { c[0] += 12; }},
        {"lift-wrong", 6, "", [](Codes& c) { OnRgb(c, [](double x) { return 0.06 + 0.94 * x; }); }},
        {"gamma-wrong", 1.2, "an exponent of 1.2", [](Codes& c) { c[0] = 16 + 219 * Power((c[0] - 16) / 219, 1.2); }},
        {"gamma-wrong", 0.8, "", [](Codes& c) { c[0] = 255.75 * Power(c[0] / 255.75, 0.8); }},
        {"gamma-wrong", 1.2, "", [](Codes& c) { OnRgb(c, [](double x) { return Power(x, 1.2); }); }},
        {"gamma-wrong", 1 / 2.2, "encoded by sRGB's curve once too often", [](Codes& c) { OnRgb(c, EncodedOnceMore); }},
        {"gamma-wrong", 2.2, "it is linear", [](Codes& c) { OnRgb(c, Decoded); }},
        {"saturation-wrong", 90, "90.0 % of their strength",
         [](Codes& c) {
             c = {c[0], 128 + (c[1] - 128) * 0.9, 128 + (c[2] - 128) * 0.9};
         }},
        {"hue-wrong", 10, "turned by 10.0 degrees", [](Codes& c) { Turn(c, 10); }},
        {"chroma-swapped", 0, "Cb and Cr", [](Codes& c) { std::swap(c[1], c[2]); }},
        {"chroma-swapped", 0, "Red and blue",
         [](Codes& c) {
             auto rgb = Rgb(c);
             std::swap(rgb[0], rgb[2]);
             c = Luma601(rgb);
         }},
        {"chroma-missing", 0, "no colour", [](Codes& c) { c[1] = c[2] = 128; }},
        {"blacks-crushed", 16, "code 16.0 is there in place of 12.0", [](Codes& c) { c[0] = std::max(c[0], 16.0); }},
        {"whites-clipped", 200, "brighter than code 200 is", [](Codes& c) { c[0] = std::min(c[0], 200.0); }},
        {"matrix-wrong", 0, "taken for BT.709 and converted to BT.601 once too often", TakenForBt709AndCutOff},
        {"matrix-wrong", 0, "those of BT.709, where BT.601 is due", ConvertedToBt709},
        // a coefficient of green is wrong in the third digit
        {"matrix-wrong", 0, "where bt601 has 0.2990, 0.5870 and 0.1140",
         [](Codes& c) { c[0] += 0.005 * (c[0] - 16 - 0.3441 * (c[1] - 128) - 0.7141 * (c[2] - 128)); }},
        {"bits-truncated", 0, "",
         [](Codes& c) {
             c = {std::floor(c[0]), std::floor(c[1]), std::floor(c[2])};
         }},
        {"bits-truncated", 0, "",  // 64 bands, no bit of which stands still
         [](Codes& c) { c[0] = 16 + std::round((c[0] - 16) * 63 / 219) * 219 / 63; }},
    };
    for (const Damage& damage : damages) {
        const PictureFindings findings = Examine({Frame(damage.change)});
        ASSERT_THAT(IdsOf(findings), ElementsAre(damage.id)) << damage.text << damage.measured;
        EXPECT_THAT(findings.faults[0].text, testing::HasSubstr(damage.text));
        if (damage.measured > 0) {
            EXPECT_NEAR(*findings.faults[0].measured, damage.measured, 0.01 * damage.measured) << damage.id;
        }
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

TEST(CheckPicture, ACardThatWasCutKeepsTheMatrixOfItsSize) {
    const DecodedPicture card = Frame(ConvertedToBt709, lineup::Card::HD, 1280, 720);
    EXPECT_THAT(IdsOf(Examine({test::Window(card, 0, 8, 1280, 704)})), ElementsAre("cropped"));
}

TEST(CheckPicture, NamesGainAndLiftAndWhatIsDoneToColoursTogether) {
    EXPECT_THAT(IdsOf(Examine({Frame([](Codes& c) { c[0] = 16 + 219 * 0.06 + (c[0] - 16) * 0.84; })})),
                ElementsAre("gain-wrong", "lift-wrong"));
    EXPECT_THAT(IdsOf(Examine({Frame([](Codes& c) {
                    Turn(c, 10);
                    c = {c[0], 128 + (c[1] - 128) * 0.8, 128 + (c[2] - 128) * 0.8};
                })})),
                ElementsAre("saturation-wrong", "hue-wrong"));
}

TEST(CheckPicture, SaysHowFarTheNextBestExplanationLiesBehind) {
    const PictureFindings swapped = Examine({Frame([](Codes& c) { std::swap(c[1], c[2]); })});
    ASSERT_TRUE(swapped.picture->explanation);
    EXPECT_LT(swapped.picture->explanation->error, 0.3);
    EXPECT_GT(swapped.picture->explanation->nextError.value_or(0), 10);
    EXPECT_FALSE(Examine({Frame()}).picture->explanation);
}

// A little less gain moves black by no more than rounding does, whether it turns about black or about code 0.
TEST(CheckPicture, NamesTogetherWhatPatchesCannotTellApart) {
    const PictureFindings findings = Examine({Frame([](Codes& c) { c[0] = 16 + (c[0] - 16) * 0.985; })});
    EXPECT_THAT(IdsOf(findings), ElementsAre("gain-wrong"));
    const auto note = std::ranges::find(findings.notes, "other-explanation", &lineup::CheckNote::id);
    ASSERT_NE(note, findings.notes.end());
    EXPECT_THAT(note->text, testing::StartsWith("Another explanation fits the patches as well: white lies at 98."));
    EXPECT_LT(*findings.picture->explanation->nextError - findings.picture->explanation->error, 0.2);
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
    frame.head.matrix = {'s', 'm', 'p', 't', 'e', '2', '4', '0', 'm'};  // that no chain has a step for
    EXPECT_THAT(IdsOf(Examine({frame})), ElementsAre("tags-wrong"));
    for (const std::array<char, 16>& due :
         {std::array<char, 16>{'s', 'm', 'p', 't', 'e', '1', '7', '0', 'm'}, {'f', 'c', 'c'}, {}}) {
        frame.head.matrix = due;
        EXPECT_THAT(IdsOf(Examine({frame})), IsEmpty()) << due.data();
    }
}

}  // namespace
