// Completion as a person has it: keys typed into shells that run in a terminal, with the installed scripts.
#include "Tests/Packaging/Installed.h"
#include "Tests/Packaging/Terminal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

namespace {

using test::kPrefix;
using testing::StartsWith;

enum class ShellKind { Bash, Zsh };

std::string NameOf(const testing::TestParamInfo<ShellKind>& info) {
    return info.param == ShellKind::Bash ? "Bash" : "Zsh";
}

// A shell in a folder with a file and a folder, with the program on its path and its completion set up.
class Shell : public test::TestFolder, public testing::WithParamInterface<ShellKind> {
protected:
    Shell() {
        test::WriteFile(Folder() / "tone one.batn", "");
        test::WriteFile(Folder() / "Some.bundle" / "Contents" / "Info.plist", "");
        const bool isBash = GetParam() == ShellKind::Bash;
        const std::vector<std::string> environment = {"env",
                                                      "-i",
                                                      "HOME=" + Folder().string(),
                                                      "TERM=dumb",
                                                      "PS1=$ ",
                                                      "LC_ALL=C.UTF-8",
                                                      "PATH=" + (kPrefix / "bin").string() + ":/usr/bin:/bin"};
        std::vector<std::string> command = environment;
        command.insert(command.end(), isBash ? std::initializer_list<std::string>{"bash", "--norc", "--noprofile", "-i"}
                                             : std::initializer_list<std::string>{"zsh", "-f", "-i"});
        mTerminal = std::make_unique<test::Terminal>(command);
        const std::string share = (kPrefix / "share").string();
        Do("cd '" + Folder().string() + "'");
        if (isBash) {
            Do("source '" + share + "/bash-completion/completions/lineup'");
        } else {
            Do("fpath=('" + share + "/zsh/site-functions' $fpath); autoload -Uz compinit; compinit -u -D");
        }
    }

    // Runs a command and waits for its end.
    void Do(const std::string& command) {
        mTerminal->Type(command + "; echo 'do''ne'\r");
        (void)mTerminal->ReadUntil("done");
    }

    // The command line that `typed` and TAB make.
    [[nodiscard]] std::string Completed(const std::string& typed) {
        mTerminal->Type(typed + "\t\001echo '<' \r");  // Ctrl-A goes to the start: the line is printed, not run
        (void)mTerminal->ReadUntil("< lineup");
        const std::string line = mTerminal->ReadUntil("\n");
        const std::size_t end = line.find_last_not_of(" \r\n");
        return "lineup" + line.substr(0, end + 1);
    }

    // Whether `typed` and TAB show `text`, of several words that fit.
    [[nodiscard]] bool Shows(const std::string& typed, const std::string& text) {
        mTerminal->Type(typed + (GetParam() == ShellKind::Bash ? "\t\t" : "\t"));
        const bool shown = mTerminal->ReadUntil(text).ends_with(text);
        mTerminal->Type("\025");  // Ctrl-U clears the line
        return shown;
    }

private:
    std::unique_ptr<test::Terminal> mTerminal;
};

TEST_P(Shell, CompletesACommand) {
    EXPECT_EQ(Completed("lineup ren"), "lineup render");
}

TEST_P(Shell, ShowsTheCommands) {
    EXPECT_TRUE(Shows("lineup ", "validate"));
}

TEST_P(Shell, CompletesAnOption) {
    EXPECT_EQ(Completed("lineup render a.mov --mono"), "lineup render a.mov --mono-tracks");
}

TEST_P(Shell, CompletesAnIdent) {
    EXPECT_EQ(Completed("lineup render a.mov --ident bl"), "lineup render a.mov --ident blits");
    EXPECT_EQ(Completed("lineup render a.mov --ident=bl"), "lineup render a.mov --ident=blits");
}

TEST_P(Shell, ShowsTheCards) {
    EXPECT_TRUE(Shows("lineup frame a.png --card ", "sd"));
}

TEST_P(Shell, CompletesACodecThatTheFileCanHold) {
    EXPECT_EQ(Completed("lineup render a.mp4 --video-codec "), "lineup render a.mp4 --video-codec h264");
    EXPECT_EQ(Completed("lineup render a.mov --audio-codec pcm-f"), "lineup render a.mov --audio-codec pcm-f32");
}

TEST_P(Shell, CompletesACheck) {
    EXPECT_EQ(Completed("lineup validate --only audio-spl"), "lineup validate --only audio-splits");
}

TEST_P(Shell, CompletesTheNamesOfFiles) {
    EXPECT_EQ(Completed("lineup render a.mov --settings to"), "lineup render a.mov --settings tone one.batn");
}

TEST_P(Shell, CompletesTheNamesOfFoldersWhereFoldersFit) {
    EXPECT_THAT(Completed("lineup info --plugin So"), StartsWith("lineup info --plugin Some.bundle"));
    EXPECT_EQ(Completed("lineup info --plugin to"), "lineup info --plugin to");
}

INSTANTIATE_TEST_SUITE_P(Of, Shell, testing::Values(ShellKind::Bash, ShellKind::Zsh), NameOf);

}  // namespace
