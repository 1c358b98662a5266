#include <lineup/CheckReport.h>
#include <lineup/CheckSettings.h>
#include <lineup/UsageError.h>

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

TEST(CheckFaultKinds, NoPartHasAnIdTwice) {
    std::set<std::string> seen;
    for (const lineup::CheckFaultKind& kind : lineup::CheckFaultKinds()) {
        const std::string key = std::string(lineup::CheckPartName(kind.part)) + " " + std::string(kind.id);
        EXPECT_TRUE(seen.insert(key).second) << key;
        EXPECT_EQ(lineup::FindCheckFaultKind(kind.id, kind.part), &kind);
    }
}

TEST(CheckSettings, AToleranceIsThatOfTheTableUntilItIsSet) {
    lineup::CheckSettings settings;
    EXPECT_EQ(lineup::ToleranceOf(settings, "delay"), 0.5);
    settings.tolerances["delay"] = 2;
    EXPECT_EQ(lineup::ToleranceOf(settings, "delay"), 2);
}

TEST(CheckSettings, AnUnknownToleranceIsRefusedByItsName) {
    lineup::CheckSettings settings;
    settings.tolerances["loudness"] = 1;
    EXPECT_THROW(lineup::ValidateCheckSettings(settings), lineup::UsageError);
}

TEST(CheckSettings, AFrequencyDoesNotGoWithASequence) {
    lineup::CheckSettings settings;
    settings.expect = "blits";
    EXPECT_NO_THROW(lineup::ValidateCheckSettings(settings));
    settings.frequencyHz = 440;
    EXPECT_THROW(lineup::ValidateCheckSettings(settings), lineup::UsageError);
}

}  // namespace
