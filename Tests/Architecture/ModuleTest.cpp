#include "Tests/Architecture/ModuleSymbols.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <ranges>

namespace fs = std::filesystem;

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

const fs::path kModule = TEST_MODULE;
const fs::path kServices = TEST_SERVICES;

TEST(Module, ExportsItsEntryPointAndNothingElse) {
    EXPECT_THAT(test::ExportedNames(test::DynamicSymbols(kModule)), ElementsAre("xImportEntry"));
}

TEST(Module, NeedsTheServicesAndTheRuntimeLibrariesOnly) {
    const std::vector<std::string> needed = test::DynamicEntries(kModule, "NEEDED");
    EXPECT_THAT(needed, Contains(kServices.filename().string()));
    for (const std::string& library : needed) {
        EXPECT_THAT(library, testing::AnyOf(kServices.filename().string(), "libstdc++.so.6", "libm.so.6",
                                            "libgcc_s.so.1", "libc.so.6", testing::StartsWith("ld-linux")));
    }
}

TEST(Module, UsesNoSymbolThatTheseDoNotOffer) {
    EXPECT_THAT(test::UnknownNames(test::DynamicSymbols(kModule), test::DynamicSymbols(kServices)), IsEmpty());
}

TEST(Module, FindsTheServicesByAPathRelativeToItself) {
    const std::vector<std::string> paths = test::DynamicEntries(kModule, "RUNPATH");
    ASSERT_THAT(paths, testing::SizeIs(1));
    bool found = false;
    for (const auto part : std::views::split(paths.front(), ':')) {
        const std::string folder(part.begin(), part.end());
        ASSERT_THAT(folder, testing::StartsWith("$ORIGIN/"));
        const fs::path beside = kModule.parent_path() / folder.substr(std::string("$ORIGIN/").size());
        found = found || fs::exists(beside / kServices.filename());
    }
    EXPECT_TRUE(found) << kServices.filename() << " is in none of the folders of " << paths.front();
}

#ifdef TEST_MLT_MODULE
TEST(MltModule, ExportsItsRegistrationAndNothingElse) {
    EXPECT_THAT(test::ExportedNames(test::DynamicSymbols(TEST_MLT_MODULE)), ElementsAre("mlt_register"));
}
#endif

#ifdef TEST_GSTREAMER_MODULE
TEST(GStreamerModule, ExportsItsDescriptionAndNothingElse) {
    EXPECT_THAT(test::ExportedNames(test::DynamicSymbols(TEST_GSTREAMER_MODULE)),
                ElementsAre("gst_plugin_lineup_get_desc", "gst_plugin_lineup_register"));
}
#endif

TEST(ModuleSymbols, ExportsAreWhatAFileDefines) {
    EXPECT_THAT(test::ExportedNames({{"b", "", 'T'}, {"needed", "", 'U'}, {"optional", "", 'w'}, {"a", "", 'D'}}),
                ElementsAre("a", "b"));
}

TEST(ModuleSymbols, ASymbolWithoutAVersionMustComeFromTheLibrary) {
    EXPECT_THAT(test::UnknownNames({{"sin", "GLIBC_2.2.5", 'U'}, {"fill", "", 'U'}, {"stray", "", 'U'}},
                                   {{"fill", "", 'T'}, {"stray", "", 'U'}}),
                ElementsAre("stray"));
}

}  // namespace
