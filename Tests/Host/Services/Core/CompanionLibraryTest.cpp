#include "Host/Services/Core/CompanionLibrary.h"
#include "Tests/Support/TestFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace {

namespace fs = std::filesystem;

class CompanionLibrary : public test::TestFolder {
protected:
    [[nodiscard]] fs::path Find() const { return zelcore::CompanionLibrary(Folder() / "libmain.so", "libpart.so"); }
};

TEST_F(CompanionLibrary, LiesBesideTheLibraryThatLoadsIt) {
    test::WriteFile(Folder() / "libpart.so", "");
    test::WriteFile(Folder() / ZEL_PRIVATE_FOLDER / "libpart.so", "");
    EXPECT_EQ(Find(), Folder() / "libpart.so");
}

TEST_F(CompanionLibrary, LiesInAFolderOfItsOwnWhereItIsInstalled) {
    test::WriteFile(Folder() / ZEL_PRIVATE_FOLDER / "libpart.so", "");
    EXPECT_EQ(Find(), Folder() / ZEL_PRIVATE_FOLDER / "libpart.so");
}

TEST_F(CompanionLibrary, IsNotThatOfAnotherVersion) {
    test::WriteFile(Folder() / "lineup" / "libpart.so", "");
    test::WriteFile(Folder() / "lineup-99.9" / "libpart.so", "");
    EXPECT_FALSE(fs::exists(Find()));
}

TEST_F(CompanionLibrary, IsSoughtInTheSystemAndNotInTheCurrentFolderWhenNothingIsKnown) {
    EXPECT_EQ(zelcore::CompanionLibrary({}, "libpart.so"), "libpart.so");
}

TEST(FileOf, FollowsTheLinksToTheLibraryThatIsLoaded) {
    const fs::path file = zelcore::FileOf(reinterpret_cast<const void*>(&zelcore::FileOf));
    EXPECT_TRUE(file.filename().string().starts_with("libzelcore.so"));
    EXPECT_FALSE(fs::is_symlink(file));
}

TEST(FileOf, IsUnknownForWhatWasNotLoaded) {
    const int local = 0;
    EXPECT_EQ(zelcore::FileOf(&local), fs::path());
}

}  // namespace
