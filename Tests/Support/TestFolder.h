#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <unistd.h>

namespace test {

/// A test with an empty folder of its own, removed when it is over.
class TestFolder : public testing::Test {
protected:
    TestFolder() {
        const auto* const info = testing::UnitTest::GetInstance()->current_test_info();
        mFolder = std::filesystem::path(testing::TempDir()) /
                  (std::string(info->test_suite_name()) + "-" + info->name() + "-" + std::to_string(getpid()));
        std::filesystem::create_directories(mFolder);
    }
    ~TestFolder() override { std::filesystem::remove_all(mFolder); }

    [[nodiscard]] const std::filesystem::path& Folder() const { return mFolder; }

private:
    std::filesystem::path mFolder;
};

}  // namespace test
