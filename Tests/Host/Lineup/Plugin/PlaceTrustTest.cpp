#include <lineup/BundleSearch.h>
#include <lineup/Error.h>
#include "Host/Lineup/Plugin/PlaceTrust.h"
#include "Tests/Support/TestFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <unistd.h>

namespace fs = std::filesystem;
using testing::AllOf;
using testing::HasSubstr;
using testing::ThrowsMessage;

namespace {

constexpr uid_t kSomebodyElse = 54321;

}  // namespace

// A program's prefix with a bundle of three files in it, which nobody but the person who runs the test may
// change.
class PlaceTrust : public test::TestFolder {
protected:
    PlaceTrust() {
        for (const char* const file : {"Contents/Info.plist", "Contents/x86_64-linux/Tone.so",
                                       "Contents/Resources/locale/de/LC_MESSAGES/BarsAndTone.mo"}) {
            test::WriteFile(Bundle() / file, "x");
        }
        fs::permissions(Prefix(), fs::perms(0755));
    }

    [[nodiscard]] fs::path Prefix() const { return Folder() / "prefix"; }
    [[nodiscard]] fs::path Bundle() const { return Prefix() / "BarsAndTone.bundle"; }

    void LetEverybodyWriteTo(const fs::path& path) const {
        fs::permissions(path, fs::perms::others_write, fs::perm_options::add);
    }

    void ExpectRefused(const fs::path& culprit, const std::string& why) const {
        EXPECT_THAT([this] { lineup::RequireTrusted(Prefix(), Bundle()); },
                    ThrowsMessage<lineup::Error>(AllOf(HasSubstr(culprit.string() + " "), HasSubstr(why))));
    }
};

TEST_F(PlaceTrust, TakesWhatOnlyItsUserCanChange) {
    EXPECT_NO_THROW(lineup::RequireTrusted(Prefix(), Bundle()));
    EXPECT_EQ(lineup::FindBundle(Prefix()), Bundle());
}

TEST_F(PlaceTrust, TakesWhatAGroupCanChange) {
    fs::permissions(Prefix(), fs::perms(0775));
    fs::permissions(Bundle(), fs::perms(0775));
    EXPECT_NO_THROW(lineup::RequireTrusted(Prefix(), Bundle()));
}

TEST_F(PlaceTrust, LooksAtNothingAboveThePrefix) {
    LetEverybodyWriteTo(Folder());
    EXPECT_NO_THROW(lineup::RequireTrusted(Prefix(), Bundle()));
}

TEST_F(PlaceTrust, RefusesAnyFolderOnTheWayThatEverybodyCanWriteTo) {
    LetEverybodyWriteTo(Prefix());
    ExpectRefused(Prefix(), "can be written to by everybody");
}

TEST_F(PlaceTrust, RefusesAStickyFolderToo) {
    fs::permissions(Prefix(), fs::perms(01777));
    ExpectRefused(Prefix(), "can be written to by everybody");
}

TEST_F(PlaceTrust, RefusesABundleWhereEverybodyCanWriteToAnything) {
    for (const char* const name :
         {"", "Contents", "Contents/Info.plist", "Contents/x86_64-linux", "Contents/x86_64-linux/Tone.so",
          "Contents/Resources/locale/de", "Contents/Resources/locale/de/LC_MESSAGES/BarsAndTone.mo"}) {
        const fs::path culprit = *name == '\0' ? Bundle() : Bundle() / name;
        const auto before = fs::status(culprit).permissions();
        LetEverybodyWriteTo(culprit);
        ExpectRefused(culprit, "can be written to by everybody");
        fs::permissions(culprit, before);
    }
}

TEST_F(PlaceTrust, RefusesWhatBelongsToSomebodyElse) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can give files away";
    }
    for (const fs::path& culprit :
         {Prefix(), Bundle(), Bundle() / "Contents", Bundle() / "Contents/x86_64-linux/Tone.so"}) {
        ASSERT_EQ(chown(culprit.c_str(), kSomebodyElse, kSomebodyElse), 0);
        ExpectRefused(culprit, "belongs to user 54321, who is neither you nor the owner of this program");
        ASSERT_EQ(chown(culprit.c_str(), 0, 0), 0);
    }
}

TEST_F(PlaceTrust, RefusesALinkThatSomebodyElseMade) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can give files away";
    }
    fs::rename(Bundle(), Folder() / "moved");
    fs::create_directory_symlink(Folder() / "moved", Bundle());
    EXPECT_NO_THROW(lineup::RequireTrusted(Prefix(), Bundle()));
    ASSERT_EQ(lchown(Bundle().c_str(), kSomebodyElse, kSomebodyElse), 0);
    ExpectRefused(Bundle(), "belongs to user 54321");
}

TEST_F(PlaceTrust, RefusesALinkIntoAFolderWhereEverybodyCanPutSomethingElse) {
    const fs::path shared = Folder() / "shared";
    fs::create_directory(shared);
    fs::rename(Bundle(), shared / "moved");
    fs::create_directory_symlink(shared / "moved", Bundle());
    fs::permissions(shared, fs::perms(0777));
    ExpectRefused(Bundle(), "and everybody can write to " + shared.string());
    fs::permissions(shared, fs::perms(01777));  // what is there cannot be replaced, and it is ours
    EXPECT_NO_THROW(lineup::RequireTrusted(Prefix(), Bundle()));
    LetEverybodyWriteTo(shared / "moved/Contents");
    ExpectRefused(Bundle() / "Contents", "can be written to by everybody");
}

TEST_F(PlaceTrust, RefusesALinkBelowAFolderFarUpWhereEverybodyCanPutSomethingElse) {
    const fs::path shared = Folder() / "shared";
    fs::create_directories(shared / "a/b");
    fs::rename(Bundle(), shared / "a/b/moved");
    fs::create_directory_symlink(shared / "a/b/moved", Bundle());
    EXPECT_NO_THROW(lineup::RequireTrusted(Prefix(), Bundle()));
    fs::permissions(shared, fs::perms(0777));
    ExpectRefused(Bundle(), "and everybody can write to " + shared.string());
}

TEST_F(PlaceTrust, RefusesLinksInsideThatItCannotFollow) {
    const fs::path link = Bundle() / "Contents/Resources/more";
    fs::create_directory_symlink(Folder(), link);
    ExpectRefused(link, "is a link to a folder");
    fs::remove(link);
    fs::create_symlink(Folder() / "nowhere", link);
    ExpectRefused(link, "leads nowhere");
}

TEST_F(PlaceTrust, SaysWhichBundleIsNotUsedAndHowToUseIt) {
    LetEverybodyWriteTo(Bundle() / "Contents");
    EXPECT_THAT([this] { (void)lineup::FindBundle(Prefix()); },
                ThrowsMessage<lineup::Error>(
                    AllOf(HasSubstr("will not use the plug-in at " + Bundle().string() + " unasked: "),
                          HasSubstr((Bundle() / "Contents").string() + " can be written to by everybody"),
                          HasSubstr("name the bundle to use it all the same"))));
}

TEST_F(PlaceTrust, TakesNoOtherBundleInsteadOfOneItRefuses) {
    fs::create_directories(Prefix() / "lib/lineup");
    fs::copy(Bundle(), Prefix() / "lib/lineup/BarsAndTone.bundle", fs::copy_options::recursive);
    LetEverybodyWriteTo(Bundle());
    EXPECT_THROW((void)lineup::FindBundle(Prefix()), lineup::Error);
    fs::remove_all(Bundle());
    EXPECT_EQ(lineup::FindBundle(Prefix()), Prefix() / "lib/lineup/BarsAndTone.bundle");
    LetEverybodyWriteTo(Prefix() / "lib");
    EXPECT_THROW((void)lineup::FindBundle(Prefix()), lineup::Error);
}
