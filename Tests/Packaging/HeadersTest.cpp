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

// Whether a header says that a library offers something to the programs of others.
bool IsOffered(const fs::path& header) {
    return (Has(header, "LINEUP_API ") || Has(header, "ZEL_API ")) && !Has(header, "inline namespace parts");
}

class InstalledHeaders : public test::InFolder {};

TEST_F(InstalledHeaders, AreThoseThatOfferSomething) {
    const std::set<std::string> installed = HeadersBelow(kInclude, "");
    for (const char* const folder : {"Host/Lineup", "Host/Services"}) {
        for (const std::string& header : HeadersBelow(kSource, folder)) {
            if (!header.starts_with("Host/Lineup/Export/Media/")) {  // of a library that nobody links to
                EXPECT_TRUE(installed.contains(header) || !IsOffered(kSource / header)) << header;
            }
        }
    }
    for (const std::string& header : HeadersBelow(kSource, "Host/Interface")) {
        EXPECT_TRUE(installed.contains(header)) << header;
    }
}

TEST_F(InstalledHeaders, AreNoneOfTheProductsOwnParts) {
    const std::set<std::string> installed = HeadersBelow(kInclude, "");
    ASSERT_GT(installed.size(), 50U);
    for (const std::string& header : installed) {
        EXPECT_FALSE(Has(kInclude / header, "inline namespace parts")) << header;
    }
}

TEST_F(InstalledHeaders, CompileWithoutWarningsAndWithNothingElseOfTheProject) {
    std::ostringstream source;
    for (const std::string& header : HeadersBelow(kInclude, "")) {
        source << "#include \"" << header << "\"\n";
    }
    test::WriteFile(Folder() / "all.cpp", source.str());
    (void)Output(TEST_CXX " -std=c++20 -fsyntax-only -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror -I'" +
                 kInclude.string() + "' all.cpp");
}

TEST_F(InstalledHeaders, NeedNothingButTheStandardLibraryAndForDialogsBoost) {
    for (const std::string& header : HeadersBelow(kInclude, "")) {
        std::istringstream lines(test::ReadFile(kInclude / header));
        for (std::string line; std::getline(lines, line);) {
            const bool isForDialogs = header.starts_with("Host/Interface/UI/");
            const bool isOfTheSystem = header.starts_with("Host/Interface/Platform/");
            const bool isForeign = line.starts_with("#include <") && line.find('/') != std::string::npos;
            EXPECT_TRUE(!isForeign || isOfTheSystem || (isForDialogs && line.starts_with("#include <boost/")))
                << header << ": " << line;
        }
    }
}

}  // namespace
