// The program's words, numbers and files are the same wherever it runs: in Turkey, where the small letter of I has no
// dot and a comma stands before decimals, where people write from right to left, and in no locale at all.
#include "Tests/Support/RunProgram.h"
#include "Tests/Support/TestFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace {

namespace fs = std::filesystem;

class Locale : public test::TestFolder {
protected:
    // What the commands print and write in a locale: files of its own, compared by what is in them.
    [[nodiscard]] std::string Work(const std::string& locale) const {
        const fs::path folder = Folder() / locale;
        fs::create_directories(folder);
        const auto result = test::RunProgram(
            "{ cd '" + folder.string() + "' && export LOCPATH='" + Folder().string() + "/locales' LC_ALL='" + locale +
                "' && " TEST_LINEUP " render bars.wav --ident ebu-stereo-1000 --duration 4 && " TEST_LINEUP
                " check bars.wav --json; " TEST_LINEUP " frame card.png && " TEST_LINEUP
                " peaks tone.svg && " TEST_LINEUP " info --json; " TEST_LINEUP " INFO; " TEST_LINEUP
                " render bars.MOV --video-codec PRORES; " TEST_LINEUP " info --level -18,5; } 2>&1",
            Folder());
        return result.out + test::ReadFile(folder / "card.png") + test::ReadFile(folder / "tone.svg");
    }

    [[nodiscard]] bool Make(const std::string& name) const {
        fs::create_directories(Folder() / "locales");
        return test::RunProgram("localedef -c -i " + name + " -f UTF-8 '" +
                                    (Folder() / "locales" / (name + ".UTF-8")).string() + "'",
                                Folder())
                   .exitCode == 0;
    }
};

TEST_F(Locale, ChangesNothingOfWhatTheProgramSaysAndWrites) {
    const std::string plain = Work("C");
    ASSERT_NE(plain.find(R"("verdict":"right")"), std::string::npos) << plain.substr(0, 1000);
    for (const std::string name : {"tr_TR", "ar_EG"}) {
        if (!Make(name)) {
            GTEST_SKIP() << "there are no sources of locales here: the package locales has them";
        }
        EXPECT_TRUE(plain == Work(name + ".UTF-8")) << name;
    }
}

}  // namespace
