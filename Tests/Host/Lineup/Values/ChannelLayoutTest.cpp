#include <lineup/ChannelLayout.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>
#include <vector>

namespace {

using testing::ElementsAre;

std::vector<std::string_view> NamesInFileOrder(const lineup::ChannelLayout& layout) {
    std::vector<std::string_view> names;
    for (const int channel : layout.fileOrder) {
        names.push_back(layout.channels[static_cast<std::size_t>(channel)]);
    }
    return names;
}

TEST(ChannelLayout, FilesHoldFiveOneWithTheCentreThird) {
    const lineup::ChannelLayout* const layout = lineup::FindChannelLayout(6);
    ASSERT_NE(layout, nullptr);
    EXPECT_THAT(layout->channels, ElementsAre("L", "R", "Ls", "Rs", "C", "LFE"));
    EXPECT_THAT(NamesInFileOrder(*layout), ElementsAre("L", "R", "C", "LFE", "Ls", "Rs"));
}

TEST(ChannelLayout, MonoAndStereoAreTheSameInFiles) {
    EXPECT_THAT(NamesInFileOrder(*lineup::FindChannelLayout("mono")), ElementsAre("M"));
    EXPECT_THAT(NamesInFileOrder(*lineup::FindChannelLayout("stereo")), ElementsAre("L", "R"));
}

TEST(ChannelLayout, EveryFileOrderNamesEachChannelOnce) {
    for (const auto& layout : lineup::ChannelLayouts()) {
        std::vector<int> sorted(layout.fileOrder.begin(), layout.fileOrder.end());
        std::ranges::sort(sorted);
        ASSERT_EQ(sorted.size(), layout.channels.size());
        for (std::size_t i = 0; i < sorted.size(); ++i) {
            EXPECT_EQ(sorted[i], static_cast<int>(i));
        }
    }
}

TEST(ChannelLayout, ThereIsNoneForOtherCountsAndNames) {
    EXPECT_EQ(lineup::FindChannelLayout(4), nullptr);
    EXPECT_EQ(lineup::FindChannelLayout(0), nullptr);
    EXPECT_EQ(lineup::FindChannelLayout("quad"), nullptr);
}

}  // namespace
