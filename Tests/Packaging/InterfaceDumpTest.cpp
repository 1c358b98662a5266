// What ./dev abi compares, and that a difference does not go unnoticed.
#include "Tests/Packaging/Installed.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>

namespace {

using testing::HasSubstr;

const std::string kDescriptions = TEST_SOURCE_DIR "/Packaging/abi/";

class InterfaceDump : public test::InFolder {
protected:
    // How ./dev abi judges a library whose description is `now`, where the one that was kept is `before`.
    [[nodiscard]] test::RunResult Compare(const std::string& before, const std::string& now) const {
        test::WriteFile(Folder() / "before.abi", before);
        test::WriteFile(Folder() / "now.abi", now);
        return Run("bash -c 'say() { echo \"$*\"; }; source \"" TEST_SOURCE_DIR
                   "/Packaging/dev/abi.sh\"; compare_abi before.abi now.abi'");
    }
    [[nodiscard]] static std::string Kept() { return test::ReadFile(kDescriptions + "liblineup.abi"); }
    [[nodiscard]] static std::string Without(const std::string& text, const std::string& pattern) {
        std::string rest = std::regex_replace(text, std::regex(pattern), "");
        EXPECT_NE(rest, text) << pattern;
        return rest;
    }
};

TEST_F(InterfaceDump, IsThatOfThisVersionsLibraries) {
    for (const std::string library : {"liblineup", "libzelcore"}) {
        EXPECT_THAT(test::ReadFile(kDescriptions + library + ".abi"),
                    HasSubstr("soname='" + library + ".so." TEST_SOVERSION "'"));
    }
}

TEST_F(InterfaceDump, IsWhatItIs) {
    EXPECT_EQ(Compare(Kept(), Kept()).exitCode, 0);
}

TEST_F(InterfaceDump, TellsThatAFunctionIsGone) {
    const std::string function = R"(<function-decl name='TimeLabel'[^>]*>[^]*?</function-decl>)";
    const std::string symbol = R"(<elf-symbol name='_ZN6lineup9TimeLabel[^>]*/>)";
    const auto result = Compare(Kept(), Without(Without(Kept(), function), symbol));
    EXPECT_NE(result.exitCode, 0);
    EXPECT_THAT(result.out, HasSubstr("lineup::TimeLabel"));
    EXPECT_THAT(result.out, HasSubstr("would break"));
}

TEST_F(InterfaceDump, TellsThatATypeHasAnotherSize) {
    const std::string before = "<class-decl name='ChannelLayout' size-in-bits='384'";
    std::string now = Kept();
    ASSERT_NE(now.find(before), std::string::npos);
    now.replace(now.find(before), before.size(), "<class-decl name='ChannelLayout' size-in-bits='448'");
    const auto result = Compare(Kept(), now);
    EXPECT_NE(result.exitCode, 0);
    EXPECT_THAT(result.out, HasSubstr("type size changed from 384 to 448"));
}

}  // namespace
