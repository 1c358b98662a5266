#pragma once

#include "Tests/Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace test {

/// A test with an empty folder of its own, removed when it is over.
class TestFolder : public testing::Test {
protected:
    [[nodiscard]] const std::filesystem::path& Folder() const { return mFolder.Path(); }

private:
    TemporaryFolder mFolder;
};

}  // namespace test
