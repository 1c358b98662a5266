// The manual pages, as three readers of manual pages judge them.
#include "Tests/Packaging/Installed.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

namespace fs = std::filesystem;
using testing::IsEmpty;

class Manual : public test::InFolder, public testing::WithParamInterface<const char*> {
protected:
    Manual() {
        const fs::path page = test::kPrefix / "share/man/man1" / (std::string(GetParam()) + ".1.gz");
        EXPECT_EQ(Run("zcat '" + page.string() + "' > page.1").exitCode, 0);
    }
    void ExpectSilence(const std::string& commandLine) const {
        const auto result = Run(commandLine);
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_THAT(result.out + result.err, IsEmpty());
    }
};

TEST_P(Manual, HasNothingThatItsReadersWarnOf) {
    ExpectSilence("LC_ALL=C.UTF-8 man --warnings -E UTF-8 -l -Tutf8 -Z page.1 2>&1 >/dev/null");
    ExpectSilence("groff -ww -man -Tutf8 page.1 2>&1 >/dev/null");
    ExpectSilence("mandoc -T lint -W style page.1");
}

TEST_P(Manual, IsFoundByName) {
    const std::string page = Output("MANPATH='" + (test::kPrefix / "share/man").string() + "' man -w " + GetParam());
    EXPECT_EQ(page, (test::kPrefix / "share/man/man1" / (std::string(GetParam()) + ".1.gz")).string() + "\n");
}

INSTANTIATE_TEST_SUITE_P(OfEachProgramAndCommand, Manual,
                         testing::Values("lineup", "lineup-render", "lineup-send", "lineup-frame", "lineup-peaks",
                                         "lineup-info", "lineup-settings", "lineup-check", "lineup-validate",
                                         "lineup-studio"));

TEST(ManualReaders, DoWarn) {
    const test::TemporaryFolder folder;
    test::WriteFile(folder.Path() / "page.1", ".TH X 1\n.SH NAME\nx \\- y\n.nosuchmacro\n");
    const std::string page = "'" + (folder.Path() / "page.1").string() + "'";
    EXPECT_NE(test::RunProgram("groff -ww -man -Tutf8 " + page + " >/dev/null", folder.Path()).err, "");
    EXPECT_NE(test::RunProgram("mandoc -T lint -W style " + page, folder.Path()).exitCode, 0);
}

}  // namespace
