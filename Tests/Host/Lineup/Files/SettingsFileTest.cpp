#include <lineup/Error.h>
#include <lineup/SettingsFile.h>
#include "Tests/Support/TestFolder.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

class SettingsFile : public test::TestFolder {
protected:
    [[nodiscard]] std::filesystem::path File() const { return Folder() / "tone.batn"; }

    // Why the file cannot be read, or "none".
    [[nodiscard]] std::string Complaint() const {
        try {
            (void)lineup::ReadSettings(File());
            return "none";
        } catch (const lineup::Error& error) {
            return error.what();
        }
    }
    [[nodiscard]] std::string CannotRead(const std::string& why) const {
        return "cannot read settings from " + File().string() + ": " + why;
    }
};

TEST_F(SettingsFile, GivesBackTheBytesThatWereWritten) {
    lineup::BarsAndToneInfo settings;
    std::memset(static_cast<void*>(&settings), 0xA5, sizeof settings);
    WriteSettings(File(), settings, false);
    const lineup::BarsAndToneInfo read = lineup::ReadSettings(File());
    EXPECT_EQ(std::memcmp(&read, &settings, sizeof settings), 0);
    EXPECT_EQ(std::filesystem::file_size(File()), 32U);
}

TEST_F(SettingsFile, ThatIsNotThereIsSaid) {
    EXPECT_EQ(Complaint(), CannotRead("No such file or directory"));
}

TEST_F(SettingsFile, ThatIsAFolderIsSaid) {
    std::filesystem::create_directory(File());
    EXPECT_EQ(Complaint(), CannotRead("Is a directory"));
}

TEST_F(SettingsFile, OfAnotherSizeIsSaid) {
    test::WriteFile(File(), std::string(31, 'x'));
    EXPECT_EQ(Complaint(), CannotRead("settings are 32 bytes, and it holds 31"));
    test::WriteFile(File(), std::string(33, 'x'));
    EXPECT_EQ(Complaint(), CannotRead("settings are 32 bytes, and it holds more"));
    test::WriteFile(File(), "");
    EXPECT_EQ(Complaint(), CannotRead("settings are 32 bytes, and it holds 0"));
}

}  // namespace
