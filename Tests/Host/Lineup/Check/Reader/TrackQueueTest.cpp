#include "Host/Lineup/Check/Reader/TrackQueue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <vector>

namespace {

using lineup::TrackQueue;
using testing::Each;
using testing::ElementsAre;

std::vector<std::vector<float>> Take(TrackQueue& queue, std::size_t count) {
    std::vector<std::vector<float>> taken(queue.Channels(), std::vector<float>(count, -99));
    std::vector<float*> pointers;
    for (auto& channel : taken) {
        pointers.push_back(channel.data());
    }
    queue.Take(pointers, count);
    return taken;
}

TEST(TrackQueue, GivesBackWhatWasAddedInPiecesOfAnySize) {
    TrackQueue queue(2);
    EXPECT_EQ(queue.Add(0, std::array{1.0F, 2.0F, 3.0F, -1.0F, -2.0F, -3.0F}), 0);
    EXPECT_EQ(queue.Add(3, std::array{4.0F, -4.0F}), 0);
    ASSERT_EQ(queue.Waiting(), 4U);
    EXPECT_THAT(Take(queue, 1), ElementsAre(ElementsAre(1), ElementsAre(-1)));
    EXPECT_THAT(Take(queue, 3), ElementsAre(ElementsAre(2, 3, 4), ElementsAre(-2, -3, -4)));
    EXPECT_EQ(queue.Waiting(), 0U);
}

TEST(TrackQueue, IsSilentWhereNothingCame) {
    TrackQueue queue(1);
    queue.Add(2, std::array{1.0F});
    queue.Add(5, std::array{2.0F});
    queue.PadTo(8);
    ASSERT_EQ(queue.Waiting(), 8U);
    EXPECT_THAT(Take(queue, 8), ElementsAre(ElementsAre(0, 0, 1, 0, 0, 2, 0, 0)));
}

TEST(TrackQueue, TakesNoMemoryForSilence) {
    TrackQueue queue(64);
    queue.Add(std::int64_t{1} << 50, std::vector<float>(64, 1.0F));
    EXPECT_LT(queue.Bytes(), 1000U);
    EXPECT_THAT(Take(queue, 1000), Each(Each(0)));
}

TEST(TrackQueue, DropsWhatComesTooLate) {
    TrackQueue queue(1);
    queue.PadTo(3);
    EXPECT_EQ(queue.Add(1, std::array{1.0F, 2.0F, 3.0F, 4.0F}), 2);
    EXPECT_EQ(queue.Add(0, std::array{9.0F, 9.0F}), 2);
    EXPECT_THAT(Take(queue, 5), ElementsAre(ElementsAre(0, 0, 0, 3, 4)));
}

TEST(TrackQueue, IsSilentAndCountsWhereThereAreNoNumbers) {
    TrackQueue queue(1);
    queue.Add(0, std::array{std::numeric_limits<float>::quiet_NaN(), 1.0F, -std::numeric_limits<float>::infinity(),
                            std::numeric_limits<float>::max(), std::numeric_limits<float>::denorm_min()});
    EXPECT_EQ(queue.NotNumbers(), 2);
    EXPECT_THAT(Take(queue, 5), ElementsAre(ElementsAre(0, 1, 0, std::numeric_limits<float>::max(),
                                                        std::numeric_limits<float>::denorm_min())));
}

TEST(TrackQueue, KeepsEverySampleHoweverManyWait) {
    TrackQueue queue(2);
    std::int64_t added = 0;
    std::int64_t taken = 0;
    for (int round = 0; round < 200; ++round) {
        std::vector<float> block(2 * 1009);
        for (std::size_t i = 0; i < 1009; ++i) {
            block[i] = static_cast<float>(added + static_cast<std::int64_t>(i));
            block[1009 + i] = -block[i];
        }
        queue.Add(added, block);
        added += 1009;
        const std::size_t count = round < 100 ? 300 : 1500;
        const auto out = Take(queue, std::min(count, queue.Waiting()));
        for (std::size_t i = 0; i < out[0].size(); ++i, ++taken) {
            ASSERT_EQ(out[0][i], static_cast<float>(taken));
            ASSERT_EQ(out[1][i], -static_cast<float>(taken));
        }
    }
    EXPECT_EQ(added - taken, static_cast<std::int64_t>(queue.Waiting()));
}

}  // namespace
