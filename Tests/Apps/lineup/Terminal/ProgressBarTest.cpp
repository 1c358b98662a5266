#include "Apps/lineup/Terminal/ProgressBar.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using cli::FormatProgress;
using testing::HasSubstr;
using testing::Not;

TEST(ProgressBar, FillsWithTheWork) {
    EXPECT_EQ(FormatProgress("a.mov", 0.0, 0.0, 30), "a.mov [...............]   0 %");
    EXPECT_EQ(FormatProgress("a.mov", 0.5, 0.0, 30), "a.mov [#######........]  50 %");
    EXPECT_EQ(FormatProgress("a.mov", 1.0, 0.0, 30), "a.mov [###############] 100 %");
}

TEST(ProgressBar, NeverSaysDoneBeforeItIs) {
    EXPECT_THAT(FormatProgress("a.mov", 0.9999, 0.0, 80), HasSubstr(" 99 %"));
}

TEST(ProgressBar, TellsTheTimeLeftOnceItHasRunForASecond) {
    EXPECT_THAT(FormatProgress("a.mov", 0.25, 30.0, 80), HasSubstr("1:30 left"));
    EXPECT_THAT(FormatProgress("a.mov", 0.25, 0.5, 80), Not(HasSubstr("left")));
}

TEST(ProgressBar, FitsTheTerminal) {
    for (int width = 30; width < 200; ++width) {
        EXPECT_LT(FormatProgress("name.mov", 0.3, 100.0, width).size(), static_cast<std::size_t>(width));
    }
}

}  // namespace
