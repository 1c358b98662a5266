// The bundle for macOS, loaded and asked here, beside the bundle for this system.
#include "Tests/Mac/AnswerReader.h"
#include "Tests/Support/RunProgram.h"
#include "Tests/Support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>

namespace fs = std::filesystem;

namespace {

using testing::HasSubstr;

// The bundle that ./dev mac has built and says to test; else the one that lies there, unless a source is newer.
constexpr const char* kBundleVariable = "LINEUP_MAC_BUNDLE";

fs::path ExecutableOf(const fs::path& bundle) {
    return bundle / "Contents" / "MacOS" / "BarsAndTone";
}

bool IsOlderThanItsSources(const fs::path& executable) {
    const auto built = fs::last_write_time(executable);
    for (const char* const folder : {"Src", "Host/Interface"}) {
        for (const auto& entry : fs::recursive_directory_iterator(fs::path(TEST_SOURCE_DIR) / folder)) {
            if (entry.is_regular_file() && entry.last_write_time() > built) {
                return true;
            }
        }
    }
    return false;
}

std::string CommandFor(const char* program, const fs::path& bundle) {
    return std::string("LC_ALL=C '") + program + "' '" + bundle.string() + "'";
}

struct Comparison {
    long long answers = 0;
    long long bytes = 0;
    std::string difference;  ///< of the first answer that differs
};

// Compares answer by answer until the programs end or two answers differ.
Comparison CompareWith(const fs::path& macBundle) {
    test::AnswerReader linuxAnswers(CommandFor(TEST_LINUX_ANSWERS, TEST_BUNDLE) + " 2>/dev/null");
    test::AnswerReader macAnswers(CommandFor(TEST_MAC_ANSWERS, macBundle) + " 2>/dev/null");
    Comparison comparison;
    for (;;) {
        const bool more = linuxAnswers.Next();
        if (macAnswers.Next() != more) {
            comparison.difference = "one of the two ends after: " + linuxAnswers.question;
            return comparison;
        }
        if (!more) {
            break;
        }
        if (linuxAnswers.question != macAnswers.question || linuxAnswers.answer.size() != macAnswers.answer.size()) {
            comparison.difference = linuxAnswers.question + " stands against " + macAnswers.question;
            return comparison;
        }
        const auto differs = std::ranges::mismatch(linuxAnswers.answer, macAnswers.answer);
        if (differs.in1 != linuxAnswers.answer.end()) {
            const auto at = differs.in1 - linuxAnswers.answer.begin();
            comparison.difference = linuxAnswers.question + ": byte " + std::to_string(at) + " is " +
                                    std::to_string(*differs.in1) + " on Linux and " + std::to_string(*differs.in2) +
                                    " on macOS";
            return comparison;
        }
        ++comparison.answers;
        comparison.bytes += static_cast<long long>(linuxAnswers.answer.size());
    }
    if (linuxAnswers.Close() != 0 || macAnswers.Close() != 0) {
        comparison.difference = "one of the two ends with a failure";
    }
    return comparison;
}

class MacBundle : public testing::Test {
protected:
    void SetUp() override {
        const char* const named = std::getenv(kBundleVariable);  // NOLINT(concurrency-mt-unsafe): one thread
        bundle =
            named != nullptr ? fs::path(named) : fs::path(TEST_SOURCE_DIR) / "build" / "mac" / "BarsAndTone.bundle";
        if (named == nullptr && (!fs::exists(ExecutableOf(bundle)) || IsOlderThanItsSources(ExecutableOf(bundle)))) {
            GTEST_SKIP() << "there is no bundle of these sources for macOS; ./dev mac builds it";
        }
    }

    // A copy of the bundle whose executable has `to` wherever it had `from`.
    fs::path CopyWith(const std::string& from, const std::string& to) {
        fs::copy(bundle, folder.Path() / "Copy.bundle", fs::copy_options::recursive);
        const fs::path copy = folder.Path() / "Copy.bundle";
        std::string bytes = test::ReadFile(ExecutableOf(copy));
        const std::size_t first = bytes.find(from);
        EXPECT_NE(first, std::string::npos);
        for (std::size_t at = first; at != std::string::npos; at = bytes.find(from, at + to.size())) {
            bytes.replace(at, from.size(), to);
        }
        test::WriteFile(ExecutableOf(copy), bytes);
        return copy;
    }

    test::RunResult Load(const fs::path& macBundle) {
        return test::RunProgram(CommandFor(TEST_MAC_ANSWERS, macBundle), folder.Path());
    }

    test::TemporaryFolder folder;
    fs::path bundle;
};

TEST_F(MacBundle, GivesTheSameAnswersAsTheBundleForLinux) {
    const Comparison comparison = CompareWith(bundle);
    ASSERT_EQ(comparison.difference, "");
    EXPECT_GT(comparison.answers, 10'000);
    std::cout << comparison.answers << " answers compared, " << comparison.bytes << " bytes, bit for bit\n";
}

TEST_F(MacBundle, GivesOtherAnswersWithAnotherColour) {
    const std::string yellow = "\x8E\x2C\xA1\xFF";
    const std::string lighterYellow = "\x8E\x2C\xA2\xFF";
    EXPECT_THAT(CompareWith(CopyWith(yellow, lighterYellow)).difference, HasSubstr("frame 640 x 480"));
}

TEST_F(MacBundle, GivesOtherAnswersWithAnotherText) {
    const fs::path copy = CopyWith("okButton", "noButton");
    EXPECT_THAT(CompareWith(copy).difference, HasSubstr("dialog of 1 channels, OK"));
}

TEST_F(MacBundle, IsNotLoadedWithoutAServiceItNeeds) {
    const test::RunResult result = Load(CopyWith("_vexelGetRowbytes", "_vexelGetRowbytez"));
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "there is no symbol _vexelGetRowbytez in the host\n");
}

TEST_F(MacBundle, TakesACallFromTheLibraryItNames) {
    const test::RunResult result = Load(CopyWith("/usr/lib/libSystem.B.dylib", "/usr/lib/libSystem.C.dylib"));
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "this system has nothing in the place of /usr/lib/libSystem.C.dylib\n");
}

TEST_F(MacBundle, IsNotLoadedWhenItsFileBreaksOff) {
    const fs::path copy = CopyWith("okButton", "okButton");
    fs::resize_file(ExecutableOf(copy), fs::file_size(ExecutableOf(copy)) / 4);  // within the first processor's part
    const test::RunResult result = Load(copy);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "the file breaks off\n");
}

TEST_F(MacBundle, IsNotAnotherKindOfFile) {
    const fs::path copy = CopyWith("okButton", "okButton");
    fs::copy_file(TEST_MODULE, ExecutableOf(copy), fs::copy_options::overwrite_existing);
    const test::RunResult result = Load(copy);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "the file is no macOS bundle for x86-64\n");
}

}  // namespace
