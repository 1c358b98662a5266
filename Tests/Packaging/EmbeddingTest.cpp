// Programs and plug-ins of others, built with what is installed.
#include "Tests/Packaging/Installed.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

namespace fs = std::filesystem;
using test::kPrefix;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

const fs::path kExamples = kPrefix / "share/doc/liblineup-dev/examples";
constexpr const char* kWhatTheExampleSays =
    "2 channels at 48000 Hz, peak 0.25\n"
    "1920x1080, luma of yellow 161\n"
    "tone.wav: 48000 samples\n";

class Embedding : public test::InFolder {
protected:
    [[nodiscard]] test::RunResult Configure(const fs::path& source) const {
        return Run("cmake -G Ninja -S '" + source.string() + "' -B build -D CMAKE_PREFIX_PATH='" + kPrefix.string() +
                   "' -D CMAKE_CXX_FLAGS='-Wall -Wextra -Werror'");
    }
    void Build(const fs::path& source) const {
        const auto configured = Configure(source);
        ASSERT_EQ(configured.exitCode, 0) << configured.out << configured.err;
        (void)Output("cmake --build build");
    }
    // A project that wants a version of the library.
    [[nodiscard]] int Find(const std::string& version) const {
        test::WriteFile(Folder() / "wants" / "CMakeLists.txt",
                        "cmake_minimum_required(VERSION 3.25)\n"
                        "project(Wants LANGUAGES CXX)\n"
                        "find_package(Lineup " +
                            version + " REQUIRED)\n");
        fs::remove_all(Folder() / "build");
        return Configure(Folder() / "wants").exitCode;
    }
    void BuildWithPkgConfig(const fs::path& source) const {
        const std::string ask = "PKG_CONFIG_PATH='" + (kPrefix / TEST_LIBDIR / "pkgconfig").string() + "' pkg-config ";
        (void)Output(TEST_CXX " -std=c++20 -Wall -Wextra -Werror '" + source.string() + "' -o program $(" + ask +
                     "--cflags --libs lineup) -Wl,-rpath,$(" + ask + "--variable=libdir lineup)");
    }
};

TEST_F(Embedding, WorksThroughFindPackage) {
    ASSERT_NO_FATAL_FAILURE(Build(kExamples / "embed"));
    EXPECT_EQ(Output("build/embed"), kWhatTheExampleSays);
}

TEST_F(Embedding, WorksThroughPkgConfig) {
    BuildWithPkgConfig(kExamples / "embed/embed.cpp");
    EXPECT_EQ(Output("./program"), kWhatTheExampleSays);
}

TEST_F(Embedding, OffersPlugInsTheInterfaceAlone) {
    ASSERT_NO_FATAL_FAILURE(Build(kExamples / "plugin"));
    const std::string lineup = "'" + (kPrefix / "bin/lineup").string() + "' ";
    (void)Output(lineup + "render grey.mov --size 256x120 --duration 0.2 --plugin build/Grey.bundle");
    EXPECT_THAT(Output(lineup + "validate build/Grey.bundle"),
                AllOf(HasSubstr(" passed\n"), Not(HasSubstr("skipped"))));
}

TEST_F(Embedding, OffersTheControlsOfDialogsTogetherWithBoost) {
    const fs::path source = Folder() / "dialogs";
    test::WriteFile(source / "CMakeLists.txt", R"(
cmake_minimum_required(VERSION 3.25)
project(Dialogs LANGUAGES CXX)
find_package(Lineup REQUIRED)
add_library(dialogs SHARED dialogs.cpp)
target_link_libraries(dialogs PRIVATE Lineup::zelui)
)");
    test::WriteFile(source / "dialogs.cpp", R"(
#include <lineup/interface/UI/UI_Toolkit.h>
bool HasToolkit() { return zelui::ui::CurrentToolkit() != nullptr; }
)");
    ASSERT_NO_FATAL_FAILURE(Build(source));
}

// The reader of catalogues is a library that is loaded for the first text.
TEST_F(Embedding, TranslatesTheTextsOfThePlugIn) {
    test::WriteFile(Folder() / "text.cpp", R"(
#include <lineup/interface/Core/Localizer.h>
#include <lineup/BundleSearch.h>
#include <lineup/Importer.h>
#include <lineup/services/LocalizerSetup.h>
#include <cstdio>
int main() {
    const lineup::Importer importer(lineup::FindBundle());
    zelcore::config::SetLanguage("de");
    for (const char16_t letter : zelcore::config::Localizer::Get().GetLocalizedString(
             "$$$/Corvane/Importers/BarsAndTone/ToneSettingsDialog/Title=Tone Settings")) {
        std::putchar(static_cast<char>(letter));
    }
}
)");
    BuildWithPkgConfig(Folder() / "text.cpp");
    EXPECT_EQ(Output("./program"), "Toneinstellungen");
}

TEST_F(Embedding, FindsTheVersionThatIsWantedAndNoOther) {
    EXPECT_EQ(Find(TEST_SOVERSION), 0);
    EXPECT_NE(Find("99.0"), 0);
    EXPECT_NE(Find("0.0.1"), 0);
}

}  // namespace
