// What a frame request asks of the host's frame services, call by call. The program's own services
// stand in front of the host's and only keep a list.
#include "Tests/Src/BarsAndToneImporter/ExpectedCalls.h"
#include "Tests/Support/FillRecorder.h"
#include "Tests/Support/Importer.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

namespace {

using test::ExpectedFor;
using test::k8BitFormat;
using test::kFloatFormat;
using test::PretendFrame;
using test::RecordedCalls;
using test::ServiceCall;

std::int32_t Draw(PretendFrame& frame, int width, int height, std::uint32_t pixelFormat,
                  test::Placement placement = {}) {
    test::StartRecording(frame.rowBytes);
    return test::Send(test::FrameRequest{.width = static_cast<std::int16_t>(width),
                                         .height = static_cast<std::int16_t>(height),
                                         .pixelFormat = pixelFormat,
                                         .frame = &frame.frame,
                                         .placement = placement});
}

// One line that tells which call differs, not a list of thousands.
testing::AssertionResult DrawsAsExpected(PretendFrame& frame, int width, int height, std::uint32_t pixelFormat) {
    const std::int32_t result = Draw(frame, width, height, pixelFormat);
    const auto expected = ExpectedFor(frame, width, height, pixelFormat);
    const auto& actual = RecordedCalls();
    auto failure = testing::AssertionFailure() << width << " x " << height << " as " << std::hex << pixelFormat;
    failure << std::dec << ": ";
    if (result != 0) {
        return failure << "result " << result;
    }
    if (actual.size() != expected.size()) {
        return failure << actual.size() << " calls, not " << expected.size();
    }
    for (std::size_t i = 0; i < actual.size(); ++i) {
        if (actual[i] != expected[i]) {
            return failure << "call " << i << " is " << actual[i] << ", not " << expected[i];
        }
    }
    return testing::AssertionSuccess();
}

std::vector<ServiceCall> Fills() {
    std::vector<ServiceCall> fills;
    for (const ServiceCall& call : RecordedCalls()) {
        if (call.frame == nullptr) {
            fills.push_back(call);
        }
    }
    return fills;
}

constexpr int kLargest = std::numeric_limits<std::int16_t>::max();
constexpr int kSmallest = std::numeric_limits<std::int16_t>::min();
constexpr std::pair<int, int> kSizes[] = {{1920, 1080},
                                          {1280, 720},
                                          {3840, 2160},
                                          {4096, 2160},
                                          {720, 486},
                                          {720, 576},
                                          {640, 480},
                                          {1, 1},
                                          {2, 2},
                                          {3, 3},
                                          {1, 1080},
                                          {1920, 1},
                                          {0, 0},
                                          {0, 1080},
                                          {1920, 0},
                                          {-1, -1},
                                          {-1, 1080},
                                          {1920, -1},
                                          {-2, 100},
                                          {-1920, 1080},
                                          {1920, -1080},
                                          {-720, -486},
                                          {kLargest, kLargest},
                                          {kSmallest, kSmallest},
                                          {kLargest, 1},
                                          {1, kLargest},
                                          {kSmallest, 1},
                                          {1, kSmallest}};

TEST(FillCalls, FollowTheCardAtManySizes) {
    PretendFrame frame;
    for (const auto& [width, height] : kSizes) {
        EXPECT_TRUE(DrawsAsExpected(frame, width, height, kFloatFormat));
        EXPECT_TRUE(DrawsAsExpected(frame, width, height, k8BitFormat));
    }
}

TEST(FillCalls, FollowTheCardAtEverySmallSize) {
    PretendFrame frame;
    for (int width = -40; width <= 140; ++width) {
        const int height = 140 - width;
        EXPECT_TRUE(DrawsAsExpected(frame, width, height, kFloatFormat));
        EXPECT_TRUE(DrawsAsExpected(frame, width, height, k8BitFormat));
    }
}

TEST(FillCalls, TakeAnyStrideTheHostTells) {
    constexpr int kMost = std::numeric_limits<int>::max();
    constexpr int kLeast = std::numeric_limits<int>::min();
    for (const int rowBytes : {0, 1, -7680, 30720, 30736, kMost, kLeast}) {
        PretendFrame frame(rowBytes);
        EXPECT_TRUE(DrawsAsExpected(frame, 1920, 1080, kFloatFormat)) << "stride " << rowBytes;
        EXPECT_TRUE(DrawsAsExpected(frame, 720, 486, k8BitFormat)) << "stride " << rowBytes;
        EXPECT_TRUE(DrawsAsExpected(frame, kSmallest, kSmallest, k8BitFormat)) << "stride " << rowBytes;
    }
}

TEST(FillCalls, TakeAFrameWithoutPixelsWhenThereIsNothingToFill) {
    PretendFrame frame(0, 0);
    EXPECT_TRUE(DrawsAsExpected(frame, 0, 0, kFloatFormat));
    EXPECT_TRUE(DrawsAsExpected(frame, 0, 0, k8BitFormat));
}

TEST(FillCalls, OfACardAreOneABarAndOneARampColumn) {
    PretendFrame frame;
    ASSERT_EQ(Draw(frame, 720, 486, k8BitFormat), 0);
    EXPECT_EQ(Fills().size(), 22U);
    ASSERT_EQ(Draw(frame, 1920, 1080, kFloatFormat), 0);
    EXPECT_EQ(Fills().size(), 28U + 1029U);  // the ramp is 1028 columns wide and draws one more
    ASSERT_EQ(Draw(frame, 0, 0, kFloatFormat), 0);
    EXPECT_EQ(Fills().size(), 28U + 1U);
    ASSERT_EQ(Draw(frame, -1920, 1080, kFloatFormat), 0);
    EXPECT_EQ(Fills().size(), 28U);  // a ramp of negative width draws nothing
}

TEST(FillCalls, BeginAtTheTopLeftBarOfAnHdFrame) {
    PretendFrame frame(30720, 0x100000000);
    ASSERT_EQ(Draw(frame, 1920, 1080, kFloatFormat), 0);
    // Columns 0 to 239, picture lines 0 to 628: memory rows 451 to 1079.
    const ServiceCall grey{.destination = 0x100000000 + 451 * 30720,
                           .rowBytes = 30720,
                           .width = 240,
                           .height = 629,
                           .destinationFormat = 2829,
                           .colour = {0xFF688080},  // V 128, U 128, Y 104, A 255 from the lowest byte up
                           .colourFormat = 2061};
    EXPECT_EQ(Fills().front(), grey);
}

TEST(FillCalls, DoNotDependOnWhereTheRequestLies) {
    PretendFrame frame;
    for (const test::Placement& placement : test::kPlacements) {
        ASSERT_EQ(Draw(frame, 320, 180, kFloatFormat, placement), 0);
        EXPECT_EQ(RecordedCalls(), ExpectedFor(frame, 320, 180, kFloatFormat));
    }
}

TEST(FillCalls, AreNotMadeForAnotherPixelFormat) {
    for (const std::uint32_t format :
         {0U, 1U, 2061U, 2829U, 0x37785557U, 0x56557837U, 0x76757978U, 0x78797577U, 0x80000000U, 0xFFFFFFFFU}) {
        PretendFrame frame;
        EXPECT_EQ(Draw(frame, 1920, 1080, format), 3) << "format " << format;
        EXPECT_TRUE(RecordedCalls().empty()) << "format " << format;
    }
}

TEST(FillCalls, OfAnotherPixelFormatNeedNoFrame) {
    test::StartRecording(0);
    EXPECT_EQ(test::Send(test::FrameRequest{.width = 16, .height = 16, .pixelFormat = 0, .frame = nullptr}), 3);
    EXPECT_TRUE(RecordedCalls().empty());
}

}  // namespace
