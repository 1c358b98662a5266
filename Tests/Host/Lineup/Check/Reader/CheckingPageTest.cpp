// The page that explains the faults.
#include <lineup/CheckReport.h>
#include "Tests/Support/RunProgram.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace {

TEST(CheckingPage, ExplainsEveryFault) {
    const std::string page = test::ReadFile(TEST_SOURCE_DIR "/Docs/checking.md");
    for (const lineup::CheckFaultKind& kind : lineup::CheckFaultKinds()) {
        EXPECT_THAT(page, testing::HasSubstr("`" + std::string(kind.id) + "`")) << kind.meaning;
    }
}

}  // namespace
