#include <lineup/Validation.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <set>
#include <string>

namespace {

using lineup::validation::CheckPromise;
using lineup::validation::FindPromise;
using lineup::validation::Outcome;
using lineup::validation::Promise;
using lineup::validation::Promises;
using testing::HasSubstr;
using testing::IsEmpty;

bool IsKebabCase(std::string_view id) {
    const auto allowed = [](unsigned char c) { return std::islower(c) != 0 || c == '-'; };
    return !id.empty() && id.front() != '-' && id.back() != '-' && std::ranges::all_of(id, allowed);
}

TEST(Promises, HaveIdsInKebabCaseAndAreOneSentence) {
    for (const Promise& promise : Promises()) {
        EXPECT_TRUE(IsKebabCase(promise.id)) << promise.id;
        EXPECT_EQ(std::ranges::count(promise.text, '.'), 1) << promise.id;
        EXPECT_TRUE(promise.text.ends_with('.')) << promise.id;
    }
}

TEST(Promises, AreFoundByTheirIdsWhichAreAllDifferent) {
    std::set<std::string_view> ids;
    for (const Promise& promise : Promises()) {
        EXPECT_TRUE(ids.insert(promise.id).second) << promise.id;
        EXPECT_EQ(FindPromise(promise.id), &promise);
    }
    EXPECT_EQ(FindPromise("no-such-check"), nullptr);
    EXPECT_EQ(FindPromise(""), nullptr);
}

TEST(Outcomes, ThatAreFaultsAreFailuresCrashesAndTimeouts) {
    for (const Outcome outcome : {Outcome::Passed, Outcome::Warning, Outcome::Skipped}) {
        EXPECT_FALSE(IsFault(outcome)) << OutcomeName(outcome);
    }
    for (const Outcome outcome : {Outcome::Failed, Outcome::Crashed, Outcome::TimedOut}) {
        EXPECT_TRUE(IsFault(outcome)) << OutcomeName(outcome);
    }
    EXPECT_TRUE(IsFault(lineup::validation::Finding{}.outcome)) << "a finding that was never filled in";
}

TEST(CheckPromise, FailsForABundleThatIsNotThere) {
    for (const Promise& promise : Promises()) {
        const auto finding = CheckPromise(promise, {.bundleFolder = "nowhere/Missing.bundle"}, 1);
        EXPECT_EQ(finding.outcome, Outcome::Failed) << promise.id;
        EXPECT_THAT(finding.text, HasSubstr("nowhere/Missing.bundle")) << promise.id;
    }
}

TEST(CheckPromise, RunsInThisProcess) {
    const auto finding = CheckPromise(*FindPromise("init-answer"), {.bundleFolder = TEST_BUNDLE}, 1);
    EXPECT_EQ(finding.outcome, Outcome::Passed);
    EXPECT_THAT(finding.text, IsEmpty());
}

TEST(CheckPromise, FindsTheSameWithTheSameSeed) {
    const lineup::validation::Subject bundle{.bundleFolder = TEST_BUNDLES "/PositionsOf32Bits.bundle"};
    const auto finding = CheckPromise(*FindPromise("audio-far"), bundle, 5);
    EXPECT_EQ(finding.outcome, Outcome::Failed);
    EXPECT_EQ(CheckPromise(*FindPromise("audio-far"), bundle, 5).text, finding.text);
    EXPECT_NE(CheckPromise(*FindPromise("audio-far"), bundle, 6).text, finding.text);
}

}  // namespace
