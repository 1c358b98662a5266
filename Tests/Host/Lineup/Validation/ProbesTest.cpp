// Guarded memory says what was done to it, and where.
#include "Host/Lineup/Validation/Probes/GuardedBuffers.h"
#include "Host/Lineup/Validation/Probes/GuardedFrame.h"
#include "Host/Lineup/Validation/Probes/GuardedRecord.h"
#include "Host/Lineup/Validation/Probes/HostileNumbers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

namespace {

namespace validation = lineup::validation;
using validation::GuardedBuffers;
using validation::GuardedFrame;
using validation::GuardedRecord;

void Fill(GuardedBuffers& buffers, float value) {
    for (std::size_t c = 0; c < buffers.Channels(); ++c) {
        std::ranges::fill(buffers.Channel(c), value);
    }
}

TEST(GuardedBuffers, HaveNothingToSayWhenAllIsWrittenAndNothingElse) {
    GuardedBuffers buffers(2, 5);
    Fill(buffers, 0.25F);
    EXPECT_EQ(buffers.WrittenOutside(), "");
    EXPECT_EQ(buffers.LeftUnwritten(2), "");
    EXPECT_EQ(buffers.WrittenInPart(2), "");
    EXPECT_EQ(buffers.NotFinite(2), "");
    EXPECT_EQ(buffers.LouderThan(0.25, 2), "");
    EXPECT_EQ(buffers.WrittenFrom(2), "");
}

TEST(GuardedBuffers, TellWhatWasWrittenOutsideOfThem) {
    GuardedBuffers after(2, 5);
    after.Pointers()[1][6] = 0.0F;
    EXPECT_EQ(after.WrittenOutside(), "channel 1 was written to past the block: 2 samples after its end");
    GuardedBuffers before(2, 5);
    before.Pointers()[0][-1] = 0.0F;
    EXPECT_EQ(before.WrittenOutside(), "channel 0 was written to 1 samples before its buffer");
    GuardedBuffers list(2, 5);
    ++list.Pointers()[1];
    EXPECT_EQ(list.WrittenOutside(), "the list of buffers was changed at channel 1");
}

TEST(GuardedBuffers, TellAChannelThatIsLeftAloneFromOneThatIsWrittenInPart) {
    GuardedBuffers buffers(2, 5);
    std::ranges::fill(buffers.Channel(0).first(4), 0.0F);
    EXPECT_EQ(buffers.LeftUnwritten(1), "channel 0, sample 4 was left unwritten");
    EXPECT_EQ(buffers.WrittenInPart(2), "channel 0, sample 4 was left unwritten");
    buffers.Channel(0)[4] = 0.0F;
    EXPECT_EQ(buffers.WrittenInPart(2), "") << "channel 1 was left alone";
    EXPECT_EQ(buffers.LeftUnwritten(2), "channel 1, sample 0 was left unwritten");
    EXPECT_EQ(buffers.WrittenFrom(1), "");
    EXPECT_EQ(buffers.WrittenFrom(0), "channel 0, sample 0 was written and should not be");
}

TEST(GuardedBuffers, TellNaNFromASampleThatIsTooLoud) {
    GuardedBuffers buffers(1, 3);
    Fill(buffers, 0.0F);
    buffers.Channel(0)[1] = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(buffers.NotFinite(1), "channel 0, sample 1 is not finite");
    EXPECT_EQ(buffers.LouderThan(0.5, 1), "");
    buffers.Channel(0)[2] = -0.75F;
    EXPECT_EQ(buffers.LouderThan(0.5, 1), "channel 0, sample 2 is beyond the level of 0.5");
}

TEST(GuardedRecord, TellsAByteThatChangedOutsideOfItsFields) {
    for (const validation::Placement& placement : validation::kPlacements) {
        GuardedRecord<std::uint64_t> record(7, placement);
        auto* const bytes = static_cast<std::uint8_t*>(record.Data());
        bytes[3] ^= 0xFFU;
        EXPECT_EQ(record.ChangedOutside({{2, 2}}), "");
        EXPECT_EQ(record.ChangedOutside({{4, 4}, {0, 3}}), "changed at byte 3, which is not the plug-in's to write");
        bytes[3] ^= 0xFFU;
        bytes[8] ^= 0xFFU;
        EXPECT_EQ(record.ChangedOutside({{0, 8}}), "was written past: 1 bytes after its end");
        bytes[8] ^= 0xFFU;
        bytes[-2] ^= 0xFFU;
        EXPECT_EQ(record.ChangedOutside({{0, 8}}), "was written to 2 bytes before its start");
    }
}

TEST(GuardedFrame, TellsWhereSomethingElseThanThePictureWasDrawnOn) {
    const GuardedFrame frame({.width = 8, .height = 3, .pixelFormat = kPixelFormat_VUYA_8u, .extraColumns = 2});
    EXPECT_TRUE(frame.IsUntouched());
    std::uint8_t* const pixels = frame.Handle()->pixels;
    pixels[0] = 0;
    EXPECT_FALSE(frame.IsUntouched());
    EXPECT_EQ(frame.Row(0)[0], 0);
    EXPECT_EQ(frame.WrittenOutside(), "");
    pixels[frame.Row(0).size()] = 0;
    EXPECT_EQ(frame.WrittenOutside(), "was drawn outside of its picture: between its rows");
    pixels[-1] = 0;
    EXPECT_EQ(frame.WrittenOutside(), "was drawn outside of its picture: before its first row");
}

TEST(HostileNumbers, AreTheSameFromTheSameSeed) {
    validation::Random first(7);
    validation::Random second(7);
    validation::HostileNumbers numbers(first);
    validation::HostileNumbers again(second);
    for (int i = 0; i < 100; ++i) {
        const float number = numbers.Float();
        EXPECT_FALSE(validation::IsUnwritten(number));
        const float same = again.Float();
        EXPECT_TRUE(number == same || (std::isnan(number) && std::isnan(same)));
        EXPECT_EQ(numbers.Position(), again.Position());
    }
}

TEST(HostileNumbers, SpoilARecordOfAnySizeAndNothingBehindIt) {
    validation::Random random(1);
    validation::HostileNumbers numbers(random);
    for (const std::size_t size : {1U, 3U, 4U, 7U, 32U, 101U}) {
        const std::vector<std::uint8_t> before(size + 8, 0x5A);
        int spoiled = 0;
        for (int i = 0; i < 20; ++i) {
            std::vector<std::uint8_t> record = before;
            numbers.Spoil(std::span(record).first(size));
            EXPECT_TRUE(std::equal(record.begin() + static_cast<std::ptrdiff_t>(size), record.end(), before.begin()));
            spoiled += record != before ? 1 : 0;
        }
        EXPECT_GT(spoiled, 10) << size;
    }
}

}  // namespace
