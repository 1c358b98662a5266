#include <lineup/Error.h>
#include <lineup/Importer.h>
#include "Host/Interface/Frame/PixelFormats.h"
#include "Tests/Support/TestFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <dlfcn.h>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

namespace fs = std::filesystem;
using lineup::Importer;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

class ImporterFolders : public test::TestFolder {
protected:
    [[nodiscard]] fs::path CopyOfTheBundle() const {
        const fs::path copy = Folder() / "Copy.bundle";
        fs::copy(TEST_BUNDLE, copy, fs::copy_options::recursive);
        return copy;
    }
    static fs::path Executable(const fs::path& bundle) { return bundle / fs::relative(TEST_MODULE, TEST_BUNDLE); }
};

std::string LoadingError(const fs::path& bundle) {
    try {
        const Importer importer(bundle);
    } catch (const std::exception& error) {
        return error.what();
    }
    return "no error";
}

TEST_F(ImporterFolders, NoBundleAtAllIsSaidWithItsPath) {
    EXPECT_THAT(LoadingError(Folder() / "Nothing.bundle"),
                AllOf(HasSubstr("no bundle at"), HasSubstr("no such folder")));
}

TEST_F(ImporterFolders, ABundleWithoutAnExecutableForThisPlatformIsSaid) {
    const fs::path copy = CopyOfTheBundle();
    fs::remove(Executable(copy));
    EXPECT_THAT(LoadingError(copy), AllOf(HasSubstr("no executable for this platform"), HasSubstr(Executable(copy))));
}

TEST_F(ImporterFolders, AnExecutableThatIsNoneIsSaid) {
    const fs::path copy = CopyOfTheBundle();
    fs::remove(Executable(copy));
    std::ofstream(Executable(copy)) << "not a shared object";
    EXPECT_THAT(LoadingError(copy), AllOf(HasSubstr("cannot load"), HasSubstr(Executable(copy))));
}

TEST(Importer, WithoutAnEntryPointIsRefused) {
    EXPECT_THAT(LoadingError(TEST_BUNDLES "/NoEntryPoint.bundle"), HasSubstr("no entry point xImportEntry"));
}

TEST(Importer, ThatAnswersInitWronglyIsRefused) {
    EXPECT_THAT(LoadingError(TEST_BUNDLES "/WrongInitAnswer.bundle"),
                HasSubstr("answers the Init request with 0 instead of 400"));
}

TEST(Importer, ListsWhatThePluginOffers) {
    const Importer importer(TEST_BUNDLE);
    EXPECT_THAT(importer.FileTypes(), ElementsAre(0x58514E56U));
    EXPECT_THAT(importer.PixelFormats(), ElementsAre(kPixelFormat_VUYA_32f));
    EXPECT_EQ(importer.Bundle().Identifier(), "org.barsandtone.importer");
}

TEST(Importer, OffersNothingWhenThePluginRefuses) {
    const Importer importer(TEST_BUNDLES "/RefusesEverything.bundle");
    EXPECT_TRUE(importer.FileTypes().empty());
    EXPECT_TRUE(importer.PixelFormats().empty());
}

// Each frame of a call that fails lets go of what it holds, the plug-in too, before somebody reads the error.
TEST(Importer, PassesOnThePluginsErrorsSoThatTheyOutliveIt) {
    const fs::path bundle = TEST_BUNDLES "/ThrowsItsOwnError.bundle";
    fs::path module;
    std::string text = "no error";
    try {
        const Importer importer(bundle);
        module = importer.Bundle().Executable();
        importer.ReadAudio({}, 0, 1, nullptr);
    } catch (const lineup::Error& error) {
        EXPECT_EQ(dlopen(module.c_str(), RTLD_NOW | RTLD_NOLOAD), nullptr) << "the plug-in is still loaded";
        text = error.what();
    }
    EXPECT_EQ(text, "out of tape");
}

TEST(Importer, StopsAskingAPluginWhoseListsHaveNoEnd) {
    const Importer importer(TEST_BUNDLES "/EndlessLists.bundle");
    EXPECT_THAT(importer.FileTypes(), testing::SizeIs(256U));
    EXPECT_THAT(importer.PixelFormats(), testing::SizeIs(256U));
}

TEST(Importer, OfSettingsOfAnotherSizeIsNotUsed) {
    const Importer importer(TEST_BUNDLES "/LongSettings.bundle");
    EXPECT_EQ(importer.SettingsSize(), 33U);
    try {
        (void)importer.DefaultSettings(48000.0F);
        FAIL() << "was used";
    } catch (const lineup::Error& error) {
        EXPECT_STREQ(error.what(),
                     "cannot use " TEST_BUNDLES "/LongSettings.bundle: its settings are 33 bytes, not 32");
    }
}

TEST(Importer, MakesTheDefaultSettingsAtTheHostsRate) {
    const lineup::BarsAndToneInfo settings = Importer(TEST_BUNDLE).DefaultSettings(44100.0F);
    EXPECT_EQ(settings.version, 1U);
    EXPECT_EQ(settings.sampleRate, 44100.0F);
    EXPECT_EQ(settings.channelType, 2U);
    EXPECT_EQ(settings.numChannels, 2U);
    EXPECT_EQ(settings.frequency, 1000.0F);
    EXPECT_EQ(settings.amplitude, 0.25F);
}

TEST(Importer, RefusalsBecomeErrorsThatNameTheAct) {
    const Importer importer(TEST_BUNDLES "/RefusesEverything.bundle");
    const auto errorOf = [](const auto& act) {
        try {
            act();
        } catch (const lineup::Error& error) {
            return std::string(error.what());
        }
        return std::string("no error");
    };
    const lineup::BarsAndToneInfo settings;
    zelcore::FrameBuffer frame(4, 4, kPixelFormat_VUYA_32f);
    EXPECT_THAT(errorOf([&] { (void)importer.Describe(&settings, 48000.0F); }),
                HasSubstr("cannot describe the clip: it answers with 3"));
    EXPECT_THAT(errorOf([&] { importer.DrawFrame(frame); }), HasSubstr("cannot draw the frame"));
    EXPECT_THAT(errorOf([&] { importer.ReadAudio({.prefs = &settings}, 0, 0, nullptr); }),
                HasSubstr("cannot make audio"));
    EXPECT_THAT(errorOf([&] { importer.ReadPeaks({.prefs = &settings}, 0, 100.0F, 0, nullptr, nullptr); }),
                HasSubstr("cannot make peaks"));
    EXPECT_THAT(errorOf([&] { (void)importer.SettingsSize(); }), HasSubstr("cannot say how large its settings are"));
}

TEST(Importer, RefusesAudioWithoutSettings) {
    const Importer importer(TEST_BUNDLE);
    EXPECT_THROW(importer.ReadAudio({}, 0, 0, nullptr), lineup::Error);
}

}  // namespace
