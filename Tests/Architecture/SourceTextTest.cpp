#include "Tests/Architecture/SourceTree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace {

using test::SourceFile;

constexpr std::size_t kMostLines = 450;

bool IsTooLong(const SourceFile& file) {
    return file.lines.size() > kMostLines && !file.path.ends_with("Tables.cpp");
}

// The number of the first line with a tab or with blanks at its end; 0 when there is none.
std::ptrdiff_t FirstUntidyLine(const SourceFile& file) {
    const auto untidy = std::ranges::find_if(file.lines, [](const std::string& line) {
        return line.ends_with(' ') || line.ends_with('\r') || line.find('\t') != std::string::npos;
    });
    return untidy == file.lines.end() ? 0 : untidy - file.lines.begin() + 1;
}

bool IsGuarded(const SourceFile& header) {
    return std::ranges::find(header.lines, "#pragma once") != header.lines.end();
}

TEST(SourceText, FilesStayShort) {
    for (const auto& file : test::ReadCppSources()) {
        EXPECT_FALSE(IsTooLong(file)) << file.path << " has " << file.lines.size() << " lines, more than "
                                      << kMostLines;
    }
}

TEST(SourceText, OnlyTablesMayBeLong) {
    const std::vector<std::string> lines(kMostLines + 1);
    EXPECT_TRUE(IsTooLong({"Src/A/Renderer.cpp", lines}));
    EXPECT_FALSE(IsTooLong({"Src/A/ColourTables.cpp", lines}));
}

TEST(SourceText, LinesHaveNoTabsAndNoBlanksAtTheirEnds) {
    for (const auto& file :
         test::ReadSources({"include", "Src", "Host", "Apps", "Bridges", "Tests", "Benchmarks", "Packaging"},
                           {".cpp", ".h", ".map", ".txt", ".sh"})) {
        EXPECT_EQ(FirstUntidyLine(file), 0) << file.path;
    }
}

TEST(SourceText, AnUntidyLineIsFound) {
    EXPECT_EQ(FirstUntidyLine({"a.h", {"int a;", "int b; "}}), 2);
    EXPECT_EQ(FirstUntidyLine({"a.h", {"\tint a;"}}), 1);
}

TEST(SourceText, HeadersGuardThemselves) {
    for (const auto& header :
         test::ReadSources({"include", "Src", "Host", "Apps", "Bridges", "Tests", "Benchmarks"}, {".h"})) {
        EXPECT_TRUE(IsGuarded(header)) << header.path << " has no #pragma once";
    }
    EXPECT_FALSE(IsGuarded({"a.h", {"int a;"}}));
}

}  // namespace
