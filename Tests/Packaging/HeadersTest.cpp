// The installed headers.
#include "Tests/Packaging/Installed.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <sstream>

namespace {

namespace fs = std::filesystem;

const fs::path kInclude = test::kPrefix / "include" / "lineup";
const fs::path kSource = TEST_SOURCE_DIR;

// Paths from the root, as includes name them.
std::set<std::string> HeadersBelow(const fs::path& root, const fs::path& folder) {
    std::set<std::string> names;
    for (const fs::path& file : test::FilesBelow(root / folder)) {
        if (file.extension() == ".h") {
            names.insert(file.lexically_relative(root).generic_string());
        }
    }
    return names;
}

bool Has(const fs::path& header, const char* text) {
    return test::ReadFile(header).find(text) != std::string::npos;
}

class InstalledHeaders : public test::InFolder {};

TEST_F(InstalledHeaders, AreTheDoorTheInterfaceAndTheSettingsRecord) {
    std::set<std::string> expected = HeadersBelow(kSource / "include" / "lineup", "");
    for (const std::string& header : HeadersBelow(kSource / "Host" / "Interface", "")) {
        expected.insert("interface/" + header);
    }
    expected.insert("BarsAndToneInfo.h");
    EXPECT_EQ(HeadersBelow(kInclude, ""), expected);
}

TEST_F(InstalledHeaders, AreNoneOfTheProductsOwnParts) {
    const std::set<std::string> installed = HeadersBelow(kInclude, "");
    ASSERT_GT(installed.size(), 50U);
    for (const std::string& header : installed) {
        EXPECT_FALSE(Has(kInclude / header, "inline namespace parts")) << header;
    }
}

TEST_F(InstalledHeaders, AndExamplesNameNoFolderOfTheSourceTree) {
    for (const fs::path& folder : {kInclude, test::kPrefix / "share/doc/liblineup-dev/examples"}) {
        for (const fs::path& file : test::FilesBelow(folder)) {
            for (const char* const name : {"Apps/", "Bridges/", "Host/", "Src/", "Tests/", "include/lineup"}) {
                EXPECT_FALSE(Has(file, name)) << file << ": " << name;
            }
        }
    }
}

TEST_F(InstalledHeaders, CompileWithoutWarningsAndWithNothingElseOfTheProject) {
    std::ostringstream source;
    for (const std::string& header : HeadersBelow(kInclude, "")) {
        source << "#include <lineup/" << header << ">\n";
    }
    test::WriteFile(Folder() / "all.cpp", source.str());
    (void)Output(TEST_CXX " -std=c++20 -fsyntax-only -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror -I'" +
                 kInclude.parent_path().string() + "' all.cpp");
}

TEST_F(InstalledHeaders, NeedNothingButTheStandardLibraryAndForDialogsBoost) {
    for (const std::string& header : HeadersBelow(kInclude, "")) {
        std::istringstream lines(test::ReadFile(kInclude / header));
        for (std::string line; std::getline(lines, line);) {
            const bool isForDialogs = header.starts_with("interface/UI/");
            const bool isOfTheSystem = header.starts_with("interface/Platform/");
            const bool isForeign = line.starts_with("#include <") && line.find('/') != std::string::npos &&
                                   !line.starts_with("#include <lineup/");
            EXPECT_TRUE(!isForeign || isOfTheSystem || (isForDialogs && line.starts_with("#include <boost/")))
                << header << ": " << line;
        }
    }
}

}  // namespace
