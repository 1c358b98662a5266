// Where a card lies, how fine its edges and its colour are, and whose it is.
#include "Tests/Host/Lineup/Check/Picture/CardFrames.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <numeric>
#include <span>
#include <string>
#include <vector>

namespace {

using lineup::Card;
using lineup::DecodedPicture;
using test::Examine;
using test::Frame;
using test::IdsOf;
using test::PictureFindings;
using test::Window;
using testing::Contains;
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

// A card that was scaled, and the frame around it.
struct Letterbox {
    Card card;
    int cardWidth;
    int cardHeight;
    int width;  // as it is in the frame
    int height;
    int left;
    int top;
    int frameWidth;
    int frameHeight;
};

// Between the nearest pixels, with black around it.
DecodedPicture Scaled(const Letterbox& box) {
    const DecodedPicture card = Frame({}, box.card, box.cardWidth, box.cardHeight);
    DecodedPicture frame = Frame({}, box.card, box.frameWidth, box.frameHeight);
    const auto across = static_cast<double>(card.head.width) / box.width;
    const auto down = static_cast<double>(card.head.height) / box.height;
    for (std::size_t plane = 0; plane < 3; ++plane) {
        const auto at = [&](double x, double y) {
            const auto column = static_cast<std::size_t>(std::clamp(x, 0.0, card.head.width - 1.0));
            const auto line = static_cast<std::size_t>(std::clamp(y, 0.0, card.head.height - 1.0));
            return static_cast<double>(card.planes.at(plane).at(line * card.head.width + column));
        };
        auto& codes = frame.planes.at(plane);
        std::ranges::fill(codes, static_cast<std::uint16_t>((plane == 0 ? 16 : 128) << (test::kBits - 8)));
        for (int y = 0; y < box.height; ++y) {
            for (int x = 0; x < box.width; ++x) {
                const double from = std::max(0.0, (x + 0.5) * across - 0.5);
                const double line = std::max(0.0, (y + 0.5) * down - 0.5);
                const double right = from - std::floor(from);
                const double below = line - std::floor(line);
                const double upper = at(from, line) * (1 - right) + at(from + 1, line) * right;
                const double lower = at(from, line + 1) * (1 - right) + at(from + 1, line + 1) * right;
                codes.at(static_cast<std::size_t>(box.top + y) * frame.head.width +
                         static_cast<std::size_t>(box.left + x)) =
                    static_cast<std::uint16_t>(std::lround(upper * (1 - below) + lower * below));
            }
        }
    }
    return frame;
}

// Its edges lie on whole pixels of the size that it was drawn for, and its height was rounded. One line of the SD
// card's two lies where a card of 480 lines would have it, that lies between lines itself.
TEST(PicturePlace, IsKnownToAQuarterOfAPixelAfterScaling) {
    for (const Letterbox& box : {Letterbox{Card::HD, 640, 360, 1246, 702, 0, 16, 1280, 720},
                                 Letterbox{Card::HD, 640, 360, 358, 200, 712, 146, 1280, 720},
                                 Letterbox{Card::SD, 720, 576, 720, 460, 0, 58, 720, 576}}) {
        const PictureFindings findings = Examine({Scaled(box)});
        ASSERT_THAT(IdsOf(findings), Contains("scaled")) << box.width;
        const auto& place = *findings.picture->place;
        EXPECT_NEAR(place.x, box.left, 0.25) << box.width;
        EXPECT_NEAR(place.y, box.top, 0.25) << box.width;
        EXPECT_NEAR(place.x + place.width, box.left + box.width, 0.25) << box.width;
        EXPECT_NEAR(place.y + place.height, box.top + box.height, 0.25) << box.width;
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
        const auto from = frame.planes[0].begin() + std::ptrdiff_t{y} * test::kWidth + left;
        std::fill(from, from + pixel(black->right, test::kWidth) - left, test::Stored(10));
    }
    const PictureFindings findings = Examine({frame});
    EXPECT_THAT(IdsOf(findings), IsEmpty());
    EXPECT_TRUE(std::ranges::any_of(findings.notes, [](const auto& note) { return note.id == "other-bars"; }));
}

using Plane = std::vector<std::uint16_t>;

// Each line of a plane of a frame of the usual size.
void EachLine(Plane& plane, const std::function<void(std::span<std::uint16_t>)>& change) {
    for (std::size_t y = 0; y < test::kHeight; ++y) {
        change(std::span(plane).subspan(y * test::kWidth, test::kWidth));
    }
}

void Mirror(std::span<std::uint16_t> line) {
    std::ranges::reverse(line);
}

void Blur(std::span<std::uint16_t> line) {
    constexpr std::ptrdiff_t kReach = 4;
    const Plane from(line.begin(), line.end());
    for (auto x = kReach; x + kReach < std::ssize(from); ++x) {
        line[static_cast<std::size_t>(x)] = static_cast<std::uint16_t>(
            std::accumulate(from.begin() + x - kReach, from.begin() + x + kReach + 1, 0) / (2 * kReach + 1));
    }
}

struct Done {
    const char* fault;  // null: nothing is wrong
    std::function<void(DecodedPicture&)> what;
};

TEST(PicturePlace, NamesWhatWasDoneToEdgesAndSurfacesAndNothingElse) {
    const std::vector<Done> all = {
        {"mirrored",
         [](DecodedPicture& p) { std::ranges::for_each(p.planes, [](Plane& plane) { EachLine(plane, Mirror); }); }},
        {"flipped",
         [](DecodedPicture& p) {
             for (Plane& plane : p.planes) {
                 std::ranges::reverse(plane);
                 EachLine(plane, Mirror);
             }
         }},
        {"chroma-shifted",
         [](DecodedPicture& p) {
             for (const std::size_t plane : {1U, 2U}) {
                 EachLine(p.planes.at(plane),
                          [](auto line) { std::copy_backward(line.begin(), line.end() - 3, line.end()); });
             }
         }},
        {"soft",
         [](DecodedPicture& p) { std::ranges::for_each(p.planes, [](Plane& plane) { EachLine(plane, Blur); }); }},
        {"picture-noise",
         [](DecodedPicture& p) {
             std::uint32_t state = 1;
             for (std::uint16_t& code : p.planes[0]) {
                 state = state * 1664525U + 1013904223U;
                 code = static_cast<std::uint16_t>(code + (state >> 26U) - 32U);
             }
         }},
        {nullptr,  // a logo over the corner of a bar, a time code over the foot
         [](DecodedPicture& p) {
             for (std::size_t y = 0; y < test::kHeight; ++y) {
                 const auto line = std::span(p.planes[0]).subspan(y * test::kWidth, test::kWidth);
                 if (y > 20 && y < 50) {
                     std::fill_n(line.begin() + 540, 50, test::Stored(220));
                 } else if (y > 290 && y < 310) {
                     std::fill_n(line.begin() + 250, 120, test::Stored(y % 4 < 2 ? 200 : 30));
                 }
             }
         }},
    };
    for (const Done& done : all) {
        DecodedPicture frame = Frame();
        done.what(frame);
        const PictureFindings findings = Examine({frame});
        EXPECT_TRUE(findings.isCardFound);
        EXPECT_EQ(IdsOf(findings),
                  done.fault != nullptr ? std::vector<std::string>{done.fault} : std::vector<std::string>{});
    }
}

std::vector<std::string> NotesOf(const PictureFindings& findings) {
    std::vector<std::string> ids;
    for (const lineup::CheckNote& note : findings.notes) {
        EXPECT_EQ(note.part, lineup::CheckPart::Picture) << note.id;
        ids.push_back(note.id);
    }
    return ids;
}

// Luma of every line through a symmetrical filter of three values, whose middle has all that the others have not.
DecodedPicture Filtered(const DecodedPicture& from, double beside) {
    DecodedPicture picture = from;
    const auto& luma = from.planes[0];
    for (std::size_t i = 1; i + 1 < luma.size(); ++i) {
        const double value = luma[i] * (1 - 2 * beside) + (luma[i - 1] + luma[i + 1]) * beside;
        picture.planes[0][i] = static_cast<std::uint16_t>(std::clamp(std::lround(value), 0L, (1L << test::kBits) - 1));
    }
    return picture;
}

// Each tenth of the step to either side: beyond a level by a tenth of it.
TEST(PicturePlace, MeasuresHowFarEdgesRing) {
    const DecodedPicture card = Frame();
    EXPECT_NEAR(*Examine({card}).picture->quality.ringing, 0, 0.2);
    const PictureFindings findings = Examine({Filtered(card, -0.1)});
    EXPECT_NEAR(*findings.picture->quality.ringing, 10, 0.5);
    EXPECT_THAT(IdsOf(findings), IsEmpty());
    EXPECT_THAT(NotesOf(findings), ElementsAre("ringing"));
}

// Squares of so many pixels that differ by a code or two.
DecodedPicture InBlocks(const DecodedPicture& from, std::size_t side) {
    DecodedPicture picture = from;
    for (std::size_t y = 0; y < test::kHeight; ++y) {
        for (std::size_t x = 0; x < test::kWidth; ++x) {
            const std::size_t cell = (x / side * 2654435761U) ^ (y / side * 40503U);
            auto& code = picture.planes[0][y * test::kWidth + x];
            code = static_cast<std::uint16_t>(code + (cell >> 5U) % 7);
        }
    }
    return picture;
}

// And noise, which does not keep to a grid.
TEST(PicturePlace, MeasuresWhatLiesOnTheGridOfACodec) {
    const DecodedPicture card = Frame();
    EXPECT_NEAR(*Examine({card}).picture->quality.blocking, 0, 0.1);
    const PictureFindings blocks = Examine({InBlocks(card, 8)});
    EXPECT_NEAR(*blocks.picture->quality.blocking, 100, 1);
    EXPECT_THAT(NotesOf(blocks), ElementsAre("blocking"));
    EXPECT_LT(*Examine({InBlocks(card, 1)}).picture->quality.blocking, 10);
}

// Each filter of a quarter, a half and a quarter leaves less of an edge's steepness: 1/2, 6/16, 20/64.
TEST(PicturePlace, EdgesMayBeWiderBehindACodecThatHasLeftItsBlocks) {
    using lineup::decoding::kLossless;
    constexpr std::uint32_t kEither = 0;  // as H.264 is
    const DecodedPicture twice = Filtered(Filtered(Frame(), 0.25), 0.25);
    EXPECT_THAT(IdsOf(Examine({InBlocks(twice, 8)}, "auto", kEither)), IsEmpty());
    EXPECT_THAT(IdsOf(Examine({InBlocks(twice, 8)}, "auto", kLossless)), ElementsAre("soft"));
    EXPECT_THAT(IdsOf(Examine({twice}, "auto", kEither)), ElementsAre("soft"));
    EXPECT_THAT(IdsOf(Examine({InBlocks(Filtered(twice, 0.25), 8)}, "auto", kEither)), ElementsAre("soft"));
}

TEST(PicturePlace, TheShapeOfAPixelThatAFileNamesMaySqueezeTheCard) {
    struct Row {
        Card card;
        int width;
        int height;
        float aspect;
        bool isSqueezed;
    };
    constexpr std::array<Row, 6> kRows = {{
        {Card::HD, 640, 360, 0, false},           // not said: that of its size
        {Card::HD, 640, 360, 1, false},           // 16:9
        {Card::HD, 640, 360, 0.75F, true},        // 4:3, as of a file that was 1440 wide
        {Card::SD, 720, 576, 16.0F / 15, false},  // 4:3
        {Card::SD, 720, 576, 64.0F / 45, false},  // 16:9
        {Card::SD, 720, 576, 1, true},            // square
    }};
    for (const Row& row : kRows) {
        DecodedPicture frame = Frame({}, row.card, row.width, row.height);
        frame.head.pixelAspect = row.aspect;
        const PictureFindings findings = Examine({frame});
        EXPECT_THAT(IdsOf(findings), IsEmpty());
        EXPECT_EQ(NotesOf(findings) == std::vector<std::string>{"card-squeezed"}, row.isSqueezed)
            << row.width << ", " << row.aspect;
        EXPECT_EQ(findings.picture->pixelAspect.value_or(0), static_cast<double>(row.aspect));
    }
}

}  // namespace
