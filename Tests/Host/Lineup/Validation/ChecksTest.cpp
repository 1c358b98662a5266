#include <lineup/Check.h>
#include <lineup/RunCheck.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <set>
#include <string>

namespace {

using lineup::validation::Check;
using lineup::validation::Checks;
using lineup::validation::FindCheck;
using lineup::validation::Outcome;
using lineup::validation::RunCheck;
using testing::HasSubstr;
using testing::IsEmpty;

bool IsKebabCase(std::string_view id) {
    const auto allowed = [](unsigned char c) { return std::islower(c) != 0 || c == '-'; };
    return !id.empty() && id.front() != '-' && id.back() != '-' && std::ranges::all_of(id, allowed);
}

TEST(Checks, HaveIdsInKebabCaseAndPromiseOneSentence) {
    for (const Check& check : Checks()) {
        EXPECT_TRUE(IsKebabCase(check.id)) << check.id;
        EXPECT_EQ(std::ranges::count(check.promise, '.'), 1) << check.id;
        EXPECT_TRUE(check.promise.ends_with('.')) << check.id;
    }
}

TEST(Checks, AreFoundByTheirIdsWhichAreAllDifferent) {
    std::set<std::string_view> ids;
    for (const Check& check : Checks()) {
        EXPECT_TRUE(ids.insert(check.id).second) << check.id;
        EXPECT_EQ(FindCheck(check.id), &check);
    }
    EXPECT_EQ(FindCheck("no-such-check"), nullptr);
    EXPECT_EQ(FindCheck(""), nullptr);
}

TEST(Outcomes, ThatAreFaultsAreFailuresCrashesAndTimeouts) {
    for (const Outcome outcome : {Outcome::kPassed, Outcome::kWarning, Outcome::kSkipped}) {
        EXPECT_FALSE(IsFault(outcome)) << OutcomeName(outcome);
    }
    for (const Outcome outcome : {Outcome::kFailed, Outcome::kCrashed, Outcome::kTimedOut}) {
        EXPECT_TRUE(IsFault(outcome)) << OutcomeName(outcome);
    }
    EXPECT_TRUE(IsFault(lineup::validation::Finding{}.outcome)) << "a finding that was never filled in";
}

TEST(RunCheck, FailsForABundleThatIsNotThere) {
    for (const Check& check : Checks()) {
        const auto finding = RunCheck(check, "nowhere/Missing.bundle", 1);
        EXPECT_EQ(finding.outcome, Outcome::kFailed) << check.id;
        EXPECT_THAT(finding.text, HasSubstr("nowhere/Missing.bundle")) << check.id;
    }
}

TEST(RunCheck, RunsInThisProcess) {
    const auto finding = RunCheck(*FindCheck("init-answer"), TEST_BUNDLE, 1);
    EXPECT_EQ(finding.outcome, Outcome::kPassed);
    EXPECT_THAT(finding.text, IsEmpty());
}

TEST(RunCheck, FindsTheSameWithTheSameSeed) {
    const auto bundle = std::filesystem::path(TEST_BUNDLES) / "PositionsOf32Bits.bundle";
    const auto finding = RunCheck(*FindCheck("audio-far"), bundle, 5);
    EXPECT_EQ(finding.outcome, Outcome::kFailed);
    EXPECT_EQ(RunCheck(*FindCheck("audio-far"), bundle, 5).text, finding.text);
    EXPECT_NE(RunCheck(*FindCheck("audio-far"), bundle, 6).text, finding.text);
}

}  // namespace
